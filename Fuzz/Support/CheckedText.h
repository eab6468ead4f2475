// CheckText as the fuzzers call it: the library's, or a double of it that breaks a rule (Tests/Support/BrokenRule.h).

#ifndef TALBASE_FUZZ_SUPPORT_CHECKEDTEXT_H
#define TALBASE_FUZZ_SUPPORT_CHECKEDTEXT_H

#include "TalBase/TextCheck.h"
#include "Tests/Support/BagTexts.h"

#include <string>

namespace Fuzz
{

QTalBase::TextCheckResult CheckText(const std::wstring& iText);
QTalBase::TextCheckResult CheckText(const std::wstring& iText, const Support::DelimiterPair& iPair);

} // namespace Fuzz

#endif
