#include "bsdl/BsdlActions.h"

#include "bsdl/BsdlData.h"
#include "bsdl/BsdlGrammar.h"
#include "bsdl/BsdlParserCallback.h"
#include "bsdl/BsdlScanner.h"
#include "bsdl/NumberText.h"
#include "platform/Letters.h"
#include "platform/Translation.h"

#include <algorithm>

namespace {

struct InnerLanguage {
    const char* attribute;
    int modeToken;
};

constexpr InnerLanguage kInnerLanguages[] = {
    {"REGISTER_ACCESS", BSDL_REGISTER_ACCESS_MODE},
    {"INSTRUCTION_OPCODE", BSDL_INSTRUCTION_OPCODE_MODE},
    {"INSTRUCTION_CAPTURE", BSDL_INSTRUCTION_CAPTURE_MODE},
    {"INSTRUCTION_PRIVATE", BSDL_INSTRUCTION_PRIVATE_MODE},
    {"BOUNDARY_REGISTER", BSDL_BOUNDARY_REGISTER_MODE},
    {"IDCODE_REGISTER", BSDL_IDCODE_REGISTER_MODE},
    {"USERCODE_REGISTER", BSDL_USERCODE_REGISTER_MODE},
};

constexpr const char* kDisableResults[] = {"Z", "WEAK0", "WEAK1", "PULL0", "PULL1", "KEEPER"};

std::string_view WithoutQuotes(const std::string& quoted) {
    return std::string_view(quoted).substr(1, quoted.size() - 2);
}

// The bytes of the name stay as they are, whatever they mean in the local encoding.
std::string DescribePlace(const std::string& fileName, int line) {
    return ToLocal(Translated("(in '")) + fileName +
           ToLocal(TranslatedFormat("' on line %d) ", line));
}

} // namespace

void OmBsdlActions::Error(const std::string& message) {
    ++errorCount_;
    if (!callback_)
        return;
    const char* fileName = CurrentFileName();
    const std::string place = fileName ? DescribePlace(fileName, CurrentLine()) : std::string();
    callback_->Error((place + message).c_str());
}

void OmBsdlActions::Info(const char* message) {
    if (callback_)
        callback_->Info(ToLocal(Translated(message)).c_str());
}

void OmBsdlActions::SetEntity(Text name) {
    data_.entity = *name;
}

void OmBsdlActions::SetDefaultPinMapping() {
    data_.SetDefaultPinMapping(TakeString().text);
}

bool OmBsdlActions::SetBounds(Text left, Text right) {
    const auto first = ReadLeadingNumber<int32_t>(*left);
    const auto second = ReadLeadingNumber<int32_t>(*right);
    if (!first || !second) {
        Error(ToLocal(Translated("invalig bit_vector dimensions")));
        return false;
    }
    left_ = *first;
    right_ = *second;
    return true;
}

void OmBsdlActions::EndPorts(Text direction) {
    for (const std::string& name : portNames_)
        data_.AddPort(name, *direction, left_, right_);
}

void OmBsdlActions::BeginAttribute(Text name) {
    attribute_ = *name;
    if (EqualsIgnoringCase(attribute_, "TAP_SCAN_CLOCK"))
        SetModeToken(BSDL_TAP_SCAN_CLOCK_MODE);
}

// The clause stands where other attributes have their value, so a token has to stand for that.
void OmBsdlActions::EndClockClause() {
    SetModeToken(BSDL_CLOCK_CLAUSE_END_MODE);
}

bool OmBsdlActions::EndAttribute(Text name, Text target, Text targetClass, Text value) {
    if (!value)
        return true;
    const auto* inner = std::ranges::find_if(kInnerLanguages, [name](const InnerLanguage& each) {
        return EqualsIgnoringCase(*name, each.attribute);
    });
    if (inner != std::end(kInnerLanguages))
        return PushInnerText(inner->modeToken);
    string_.reset();
    data_.AddAttribute(*name, *target, *targetClass, *value);
    return true;
}

bool OmBsdlActions::EndConstant(Text name, Text type) {
    if (EqualsIgnoringCase(*type, "PIN_MAP_STRING")) {
        pinMap_ = *name;
        return PushInnerText(BSDL_PIN_MAP_STRING_MODE);
    }
    string_.reset();
    return true;
}

// The added semicolon is what ends the list rule of every inner language.
bool OmBsdlActions::PushInnerText(int modeToken) {
    JoinedString inner = TakeString();
    inner.text += " ;";
    SetModeToken(modeToken);
    return PushScannerString(inner.text, inner.line) == 0;
}

void OmBsdlActions::AddPin(Text pin) {
    data_.AddPinMapEntry(pinMap_, pinMapPort_, pinIndex_, *pin);
    if (pinIndex_ != -1)
        ++pinIndex_;
}

// The patterns of INSTRUCTION_CAPTURE and USERCODE_REGISTER are of no use here.
void OmBsdlActions::AddPattern(Text pattern) {
    if (EqualsIgnoringCase(attribute_, "IDCODE_REGISTER"))
        data_.AddIdcode(*pattern);
    else if (EqualsIgnoringCase(attribute_, "INSTRUCTION_OPCODE"))
        data_.AddInstructionCode(instruction_, *pattern);
}

void OmBsdlActions::SetCell(Text cell, Text port, Text function, Text safe) {
    cell_.cell = *cell;
    cell_.port = *port;
    cell_.function = *function;
    cell_.safe = *safe;
}

void OmBsdlActions::SetCellDisable(Text controlCell, Text value, Text result) {
    cell_.controlCell = *controlCell;
    cell_.disableValue = *value;
    cell_.disableResult = *result;
}

bool OmBsdlActions::EndCell(Text number) {
    const bool added = data_.AddCell(*number, cell_.cell, cell_.port, cell_.function, cell_.safe,
                                     cell_.controlCell, cell_.disableValue, cell_.disableResult);
    if (!added)
        Error(ToLocal(Translated("illegal cell description in 'BOUNDARY_REGISTER' attribute")));
    return added;
}

bool OmBsdlActions::CheckCellFunction(Text function) {
    if (FindCellFunction(*function))
        return true;
    Error(ToLocal(Translated("unknown Cell_Function")));
    return false;
}

bool OmBsdlActions::CheckDisableResult(Text result) {
    const bool known = std::ranges::any_of(
        kDisableResults, [result](const char* each) { return EqualsIgnoringCase(*result, each); });
    if (!known)
        Error(ToLocal(Translated("unknown Disable_Result")));
    return known;
}

OmBsdlActions::Text OmBsdlActions::MakeElementName(Text name, Text index) {
    return MakePoolText(*name + "(" + *index + ")");
}

void OmBsdlActions::BeginString(Text quoted) {
    string_ = JoinedString{std::string(WithoutQuotes(*quoted)), CurrentLine()};
}

void OmBsdlActions::AppendString(Text quoted) {
    string_->text += WithoutQuotes(*quoted);
}

OmBsdlActions::JoinedString OmBsdlActions::TakeString() {
    JoinedString taken = string_.value_or(JoinedString{{}, CurrentLine()});
    string_.reset();
    return taken;
}
