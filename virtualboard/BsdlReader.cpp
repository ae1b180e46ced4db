// A small BSDL reader: tokens, the port clause, and the few attributes that describe test logic.
// Statements it has no use for are skipped up to their semicolon.

#include "virtualboard/DeviceDescription.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <stdexcept>

namespace vb {

namespace {

struct Token {
    enum class Kind { Word, Text, Sign } kind;
    std::string text; // words in capitals, texts without their quotes
};

using Tokens = std::vector<Token>;

bool IsWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

std::string Capitals(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

size_t EndOfWord(const std::string& text, size_t position) {
    while (position < text.size() && (IsWordCharacter(text[position]) || text[position] == '.'))
        ++position;
    return position;
}

Tokens Tokenize(const std::string& text) {
    Tokens tokens;
    for (size_t i = 0; i < text.size();) {
        if (std::isspace(static_cast<unsigned char>(text[i]))) {
            ++i;
        } else if (text.compare(i, 2, "--") == 0) {
            i = std::min(text.find('\n', i), text.size());
        } else if (text[i] == '"') {
            const size_t end = text.find('"', i + 1);
            if (end == std::string::npos)
                throw std::runtime_error("BSDL: a string that does not end");
            tokens.push_back({Token::Kind::Text, text.substr(i + 1, end - i - 1)});
            i = end + 1;
        } else if (IsWordCharacter(text[i])) {
            const size_t end = EndOfWord(text, i);
            tokens.push_back({Token::Kind::Word, Capitals(text.substr(i, end - i))});
            i = end;
        } else {
            tokens.push_back({Token::Kind::Sign, std::string(1, text[i++])});
        }
    }
    return tokens;
}

// Walks tokens; every mismatch is an exception that says what was expected.
class Cursor {
  public:
    explicit Cursor(const Tokens& tokens) : tokens_(tokens) {}

    bool AtEnd() const { return next_ >= tokens_.size(); }

    bool Is(const char* text) const { return !AtEnd() && tokens_[next_].text == text; }

    bool Accept(const char* text) {
        const bool matches = Is(text);
        next_ += matches ? 1 : 0;
        return matches;
    }

    void Expect(const char* text) {
        if (!Accept(text))
            throw std::runtime_error(std::string("BSDL: expected '") + text + "' but found '" +
                                     (AtEnd() ? "the end" : tokens_[next_].text) + "'");
    }

    const Token& Next() {
        if (AtEnd())
            throw std::runtime_error("BSDL: the text ends too early");
        return tokens_[next_++];
    }

    int Number() {
        const std::string& text = Next().text;
        int value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size())
            throw std::runtime_error("BSDL: '" + text + "' is not a number");
        return value;
    }

    void SkipPast(const char* text) {
        while (Next().text != text)
            ;
    }

  private:
    const Tokens& tokens_;
    size_t next_ = 0;
};

// An unspecified bit ('X') counts as 0: any value would do. Of several patterns the first is used.
uint64_t PatternValue(const std::string& pattern) {
    uint64_t value = 0;
    for (char c : pattern.substr(0, pattern.find(',')))
        value = value << 1 | (c == '1' ? 1 : 0);
    return value;
}

void ReadPorts(Cursor& cursor, DeviceDescription& device) {
    cursor.Expect("(");
    do {
        std::vector<std::string> names;
        do
            names.push_back(cursor.Next().text);
        while (cursor.Accept(","));
        cursor.Expect(":");
        PortDescription port;
        port.direction = cursor.Next().text;
        if (cursor.Next().text == "BIT_VECTOR") {
            cursor.Expect("(");
            port.first = cursor.Number();
            cursor.Next(); // TO or DOWNTO: the bounds tell the same
            port.last = cursor.Number();
            cursor.Expect(")");
        }
        for (const std::string& name : names) {
            port.name = name;
            device.ports.push_back(port);
        }
    } while (cursor.Accept(";"));
    cursor.Expect(")");
    cursor.Expect(";");
}

void ReadOpcodes(const std::string& text, DeviceDescription& device) {
    const Tokens tokens = Tokenize(text);
    Cursor cursor(tokens);
    do {
        std::vector<uint64_t>& codes = device.opcodes[cursor.Next().text];
        cursor.Expect("(");
        do
            codes.push_back(PatternValue(cursor.Next().text));
        while (cursor.Accept(","));
        cursor.Expect(")");
    } while (cursor.Accept(","));
}

CellFunction FunctionFromText(const std::string& text) {
    static const std::map<std::string, CellFunction> kFunctions = {
        {"INPUT", CellFunction::Input},        {"CLOCK", CellFunction::Input},
        {"OBSERVE_ONLY", CellFunction::Input}, {"OUTPUT2", CellFunction::Output},
        {"OUTPUT3", CellFunction::Output},     {"CONTROL", CellFunction::Control},
        {"CONTROLR", CellFunction::Control},   {"INTERNAL", CellFunction::Internal},
        {"BIDIR", CellFunction::Bidirectional}};
    const auto found = kFunctions.find(text);
    if (found == kFunctions.end())
        throw std::runtime_error("BSDL: unknown cell function '" + text + "'");
    return found->second;
}

DisableResult ResultFromText(const std::string& text) {
    if (text == "WEAK0" || text == "PULL0")
        return DisableResult::WeakLow;
    if (text == "WEAK1" || text == "PULL1")
        return DisableResult::WeakHigh;
    return DisableResult::Released;
}

CellEntry ReadCell(Cursor& cursor) {
    CellEntry cell;
    cell.type = cursor.Next().text;
    cursor.Expect(",");
    cell.port = cursor.Next().text;
    if (cursor.Accept("(")) {
        cell.index = cursor.Number();
        cursor.Expect(")");
    }
    cursor.Expect(",");
    cell.function = FunctionFromText(cursor.Next().text);
    cursor.Expect(",");
    cursor.Next(); // the safe value: advice to a test program, no property of the device
    if (cursor.Accept(",")) {
        cell.controlCell = cursor.Number();
        cursor.Expect(",");
        cell.disableValue = cursor.Number() == 1;
        cursor.Expect(",");
        cell.disableResult = ResultFromText(cursor.Next().text);
    }
    return cell;
}

void ReadBoundary(const std::string& text, DeviceDescription& device) {
    const Tokens tokens = Tokenize(text);
    Cursor cursor(tokens);
    do {
        const int number = cursor.Number();
        if (number < 0 || static_cast<size_t>(number) >= device.cells.size())
            throw std::runtime_error("BSDL: cell " + std::to_string(number) +
                                     " lies outside the boundary register");
        cursor.Expect("(");
        const CellEntry cell = ReadCell(cursor);
        if (cell.controlCell >= static_cast<int>(device.cells.size()))
            throw std::runtime_error("BSDL: a control cell lies outside the boundary register");
        device.cells[static_cast<size_t>(number)].push_back(cell);
        cursor.Expect(")");
    } while (cursor.Accept(","));
}

struct Attribute {
    std::string name;
    std::string value; // all strings joined, or the plain words joined
};

Attribute ReadAttribute(Cursor& cursor) {
    Attribute attribute{cursor.Next().text, ""};
    if (!cursor.Accept("OF")) {
        cursor.SkipPast(";");
        return {"", ""};
    }
    cursor.SkipPast("IS");
    while (!cursor.Accept(";")) {
        const Token& token = cursor.Next();
        if (token.text != "&")
            attribute.value += token.text;
    }
    return attribute;
}

void UseAttribute(const Attribute& attribute, std::string& boundary, DeviceDescription& device) {
    const std::string value = Capitals(attribute.value);
    if (attribute.name == "INSTRUCTION_LENGTH")
        device.instructionLength = static_cast<unsigned>(std::stoul(value));
    else if (attribute.name == "INSTRUCTION_OPCODE")
        ReadOpcodes(value, device);
    else if (attribute.name == "INSTRUCTION_CAPTURE")
        device.instructionCapture = PatternValue(value);
    else if (attribute.name == "IDCODE_REGISTER")
        device.idcode = static_cast<uint32_t>(PatternValue(value));
    else if (attribute.name == "BOUNDARY_LENGTH")
        device.cells.resize(std::stoul(value));
    else if (attribute.name == "BOUNDARY_REGISTER")
        boundary = value;
}

void RequireUsable(const DeviceDescription& device) {
    if (device.entity.empty())
        throw std::runtime_error("BSDL: no entity");
    if (device.instructionLength < 2 || device.instructionLength > kMaxInstructionBits)
        throw std::runtime_error("BSDL: " + device.entity + " has no usable INSTRUCTION_LENGTH");
}

} // namespace

bool PortDescription::Holds(int index) const {
    if (first < 0)
        return index < 0;
    return index >= std::min(first, last) && index <= std::max(first, last);
}

const PortDescription* DeviceDescription::FindPort(const std::string& name) const {
    const auto found = std::find_if(ports.begin(), ports.end(),
                                    [&](const PortDescription& port) { return port.name == name; });
    return found == ports.end() ? nullptr : &*found;
}

DeviceDescription ReadBsdl(const std::string& text) {
    const Tokens tokens = Tokenize(text);
    Cursor cursor(tokens);
    DeviceDescription device;
    std::string boundary;
    cursor.Expect("ENTITY");
    device.entity = cursor.Next().text;
    cursor.Expect("IS");
    while (!cursor.Accept("END")) {
        if (cursor.Accept("PORT"))
            ReadPorts(cursor, device);
        else if (cursor.Accept("ATTRIBUTE"))
            UseAttribute(ReadAttribute(cursor), boundary, device);
        else
            cursor.SkipPast(";");
    }
    if (!boundary.empty())
        ReadBoundary(boundary, device); // last, for BOUNDARY_LENGTH may follow it in the file
    RequireUsable(device);
    return device;
}

} // namespace vb
