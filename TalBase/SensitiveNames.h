// The names of properties whose values are sensitive: those that GetStringWithoutSensitiveInfo leaves out. For programs
// that show, log or send bags and have to hide such values at every depth, where the library leaves them out of the
// outermost bag only.
//
// Keeps no state; may be called from any thread.

#ifndef TALBASE_SENSITIVENAMES_H
#define TALBASE_SENSITIVENAMES_H

#include "TalBase/Export.h"

namespace QTalBase
{

// Returns the names, the last one followed by a null pointer. They live as long as the library is loaded, and are
// always the same ones. Never throws.
TALBASE_EXPORT const wchar_t* const* GetSensitiveNames() noexcept;

} // namespace QTalBase

#endif
