#include "jtag/ui/CablePages.h"

#include "jtag/ui/DigilentPage.h"
#include "jtag/ui/Ftd2xxPage.h"
#include "jtag/ui/JLinkPages.h"
#include "jtag/ui/ParallelPage.h"
#include "jtag/ui/UsbBlasterPage.h"

#include <algorithm>
#include <utility>

namespace {

using Type = OmCableType;

template <typename Page>
OmCablePage* Make(wxWindow* parent, std::function<void()> recheck) {
    return new Page(parent, std::move(recheck));
}

struct PageRow {
    OmCableType type;
    OmCablePageMaker make;
};

constexpr PageRow kPages[] = {
    {Type::XilinxParallelCable3, Make<OmParallelPage>},
    {Type::AlteraByteBlasterMV, Make<OmParallelPage>},
    {Type::LatticeParallelIspDownload, Make<OmParallelPage>},
    {Type::Wiggler, Make<OmParallelPage>},
    {Type::EmbestEasyIce, Make<OmParallelPage>},
    {Type::Ftd2xx, Make<OmFtd2xxPage>},
    {Type::DigilentAdept, Make<OmDigilentPage>},
    {Type::JLinkUsb, Make<OmJLinkUsbPage>},
    {Type::JLinkIp, Make<OmJLinkIpPage>},
    {Type::AlteraUsbBlaster, Make<OmUsbBlasterPage>},
};

} // namespace

OmCablePageMaker FindCablePageMaker(OmCableType type) {
    const auto* row = std::ranges::find(kPages, type, &PageRow::type);
    return row == std::end(kPages) ? nullptr : row->make;
}
