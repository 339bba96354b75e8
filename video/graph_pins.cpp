#include "video/graph_pins.h"

#include <cwchar>

#include "base/report.h"

IPin* GetFilterPin(IBaseFilter* filter, PIN_DIRECTION direction, const wchar_t* name)
{
    if (!filter)
        return nullptr;
    ComPtr<IEnumPins> pins;
    if (FAILED(filter->EnumPins(pins.Put())) || !pins) {
        ReportUserMessage(L"SEVERE: cannot enumerate pins on filter", false);
        return nullptr;
    }
    ComPtr<IPin> pin;
    while (pins->Next(1, pin.Put(), nullptr) == S_OK) {
        PIN_INFO info;
        if (FAILED(pin->QueryPinInfo(&info)))
            continue;
        if (info.pFilter)
            info.pFilter->Release();
        if (info.dir != direction || info.achName[0] == L'~')
            continue;
        if (!name || std::wcscmp(info.achName, name) == 0)
            return pin.Detach();
    }
    return nullptr;
}

bool GetFilterPinPair(IBaseFilter* filter, ComPtr<IPin>& input, ComPtr<IPin>& output)
{
    input = ComPtr<IPin>(GetFilterPin(filter, PINDIR_INPUT, nullptr));
    output = ComPtr<IPin>(GetFilterPin(filter, PINDIR_OUTPUT, nullptr));
    return input && output;
}

HRESULT FindSmartTee(IGraphBuilder* graph, IBaseFilter** tee)
{
    if (SUCCEEDED(graph->FindFilterByName(L"Smart Tee", tee)) && *tee)
        return S_OK;
    ComPtr<IEnumFilters> filters;
    if (FAILED(graph->EnumFilters(filters.Put())) || !filters)
        return VFW_E_NOT_FOUND;
    ComPtr<IBaseFilter> filter;
    while (filters->Next(1, filter.Put(), nullptr) == S_OK) {
        CLSID clsid = GUID_NULL;
        if (SUCCEEDED(filter->GetClassID(&clsid)) && clsid == CLSID_SmartTee) {
            *tee = filter.Detach();
            return S_OK;
        }
    }
    return VFW_E_NOT_FOUND;
}

void SpliceFilterPins(IGraphBuilder* graph, std::initializer_list<IPin*> release, IPin* upstream, IPin* input,
                      IPin* output, IPin* downstream)
{
    for (IPin* pin : release)
        graph->Disconnect(pin);
    graph->ConnectDirect(upstream, input, nullptr);
    graph->ConnectDirect(output, downstream, nullptr);
}
