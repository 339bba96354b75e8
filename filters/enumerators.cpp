#include "filters/enumerators.h"

#include <climits>

bool PinWalk::Fetch(CBaseFilter* filter, int& position, IPin** pin)
{
    // A place the filter has no pin for is passed over all the same.
    CBasePin* found = filter->GetPin(position++);
    if (!found)
        return false;
    *pin = found;
    found->AddRef();
    return true;
}

int MediaTypeWalk::Count(CBasePin*)
{
    return INT_MAX;
}

bool MediaTypeWalk::Exists(CBasePin* pin, int position)
{
    CMediaType type;
    return pin->GetMediaType(position, &type) == S_OK;
}

bool MediaTypeWalk::Fetch(CBasePin* pin, int& position, AM_MEDIA_TYPE** type)
{
    CMediaType offered;
    if (pin->GetMediaType(position, &offered) != S_OK)
        return false;
    // A type the pin offered but that could not be copied out still counts
    // as walked.
    ++position;
    *type = CreateMediaType(&offered);
    return *type != nullptr;
}
