#include "dialogs/ChainExamination.h"

#include "bsdl/Idcode.h"
#include "flash/FlashProgrammer.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

namespace {

constexpr char kNoChainPage[] =
    "<html><body><center><strong><font size=\"+1\" color=\"#9d2900\"><br><br><br><br>%ls</font>"
    "</strong></center></body></html>";

// The table has a light colour of its own, so its text must not take that of a dark theme.
constexpr char kDeviceRow[] = "<tr><td><font color=\"#000000\">%u</font></td>"
                              "<td><font color=\"#000000\">%ls</font></td>"
                              "<td><font color=\"#000000\">%ls</font></td></tr>\n";
constexpr char kHeaderCell[] = "<td width=\"%d%%\"><font color=\"#ffffff\"><b>%ls</b></font></td>";

std::wstring Widen(const char* format) {
    return FromLocal(format);
}

template <typename... Arguments>
std::wstring Fill(const char* format, Arguments... arguments) {
    return OmFormat(Widen(format).c_str(), arguments...);
}

// The names come from a file.
std::wstring EscapeHtml(const std::wstring& text) {
    std::wstring escaped;
    for (const wchar_t character : text) {
        if (character == L'&')
            escaped += L"&amp;";
        else if (character == L'<')
            escaped += L"&lt;";
        else if (character == L'>')
            escaped += L"&gt;";
        else
            escaped += character;
    }
    return escaped;
}

std::wstring MakeCountText(unsigned count, bool beginningHidden) {
    const std::wstring format =
        beginningHidden
            ? TranslatedPlural("At least %d JTAG device was detected:",
                               "At least %d JTAG devices were detected:", count)
            : TranslatedPlural(
                  "%d JTAG device was detected:", "%d JTAG devices were detected:", count);
    return OmFormat(format.c_str(), static_cast<int>(count));
}

std::wstring MakeHeaderRow() {
    static constexpr struct {
        int width; // percent
        const char* title;
    } kColumns[] = {{8, "#"}, {62, ForTranslation("Manufacturer")}, {30, ForTranslation("IDCODE")}};

    std::wstring cells;
    for (const auto& [width, title] : kColumns)
        cells += Fill(kHeaderCell, width, Translated(title).c_str());
    return L"<tr bgcolor=\"#5479d3\">" + cells + L"</tr>\n";
}

std::wstring MakeHiddenRow() {
    return L"<tr bgcolor=\"#ce0022\"><td colspan=\"3\"><font color=\"#ffffff\">" +
           Translated("Devices at the beginning of the chain cannot be detected due to the ATMEL "
                      "ATmega bug.") +
           L"</font></td></tr>\n";
}

std::wstring MakeDeviceRow(unsigned number, const OmChainRow& row) {
    const std::wstring idcode = row.idcode.empty() ? Translated("n/a") : row.idcode + L"h";
    return Fill(kDeviceRow, number, EscapeHtml(row.manufacturer).c_str(), idcode.c_str());
}

std::wstring MakeTable(const std::vector<OmChainRow>& rows, bool beginningHidden) {
    std::wstring table = L"<table width=\"100%\" bgcolor=\"#b4ce86\">\n" + MakeHeaderRow();
    if (beginningHidden)
        table += MakeHiddenRow();
    unsigned number = 0;
    for (const OmChainRow& row : rows)
        table += MakeDeviceRow(++number, row);
    return table + L"</table>";
}

std::wstring MakeHiddenNote(const OmChainRow& first) {
    return L"<br><br><font>" +
           TranslatedFormat(
               "The detected JTAG chain contains the ATMEL ATmega device that has a known bug in "
               "its TAP controller implementation*. The bug makes it impossible to detect devices "
               "located in the JTAG chain before the ATMEL ATmega device. In order to continue "
               "please manually specify a number of devices in the JTAG chain preceding the %ls "
               "%lsh device.",
               EscapeHtml(first.manufacturer).c_str(), first.idcode.c_str()) +
           L"</font><br>\n<br>" +
           Translated("* For more information on this bug, search for the 'IDCODE masks data from "
                      "TDI input' in the ATMEL ATmega datasheet.") +
           L"\n";
}

} // namespace

OmExaminedChain ExamineConnectedChain() {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    OmExaminedChain chain;
    if (!programmer.ExamineChain(chain.devices, chain.beginningHidden))
        return {};
    if (programmer.CaptureChainIr(chain.irBits))
        return chain;
    GetUserInterface().ShowMessage(Translated("Failed to capture JTAG chain IR bits."),
                                   Translated("Error"), kErrorBox);
    return {};
}

std::vector<OmChainRow> DescribeChain(std::span<const OmBitVector> devices) {
    std::vector<OmChainRow> rows;
    for (const OmBitVector& idcode : devices) {
        OmChainRow row{{}, DecodeIdcode(idcode).hexadecimal};
        LookupManufacturer(idcode, row.manufacturer); // an unknown one stays empty
        rows.push_back(std::move(row));
    }
    return rows;
}

std::wstring MakeChainPage(const std::vector<OmChainRow>& rows, bool beginningHidden) {
    if (rows.empty())
        return Fill(kNoChainPage, Translated("No JTAG chain detected").c_str());
    std::wstring page = L"<html><body>\n<center>" +
                        MakeCountText(static_cast<unsigned>(rows.size()), beginningHidden) +
                        L"</center><br><br>\n" + MakeTable(rows, beginningHidden);
    if (beginningHidden)
        page += MakeHiddenNote(rows.front());
    return page + L"</body></html>";
}

std::wstring MakePrecedingLabel(const OmChainRow& first) {
    return TranslatedFormat("Number of devices preceding %ls %lsh:", first.manufacturer.c_str(),
                            first.idcode.c_str());
}

void InsertPrecedingDevices(std::vector<OmBitVector>& devices, unsigned count) {
    devices.insert(devices.begin(), count, OmBitVector());
}
