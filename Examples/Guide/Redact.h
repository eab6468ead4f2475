// What may be shown of a bag, as the ninth step makes it.

#ifndef GUIDE_REDACT_H
#define GUIDE_REDACT_H

#include "Job.h"

// [redact]
// Takes the password out at every depth.
inline void Redact(QTalBase::PropertyBag& oBag)
{
    oBag.RemoveProperty(L"FTPServerPassword");
    for (const QTalBase::Property& lProperty : oBag)
    {
        if (lProperty.IsEmbedded())
        {
            Redact(*lProperty.GetBag());
        }
    }
}

// Returns a copy to be shown, and leaves the bag as it is.
inline BagPtr MakeShown(const QTalBase::PropertyBag& iBag)
{
    BagPtr lShown(QTalBase::CreatePropertyBag());
    lShown->AddPropertyBag(&iBag); // not a clone, which would share the nested bags
    Redact(*lShown);
    return lShown;
}
// [redact]

#endif
