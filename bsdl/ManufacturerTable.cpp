#include "bsdl/ManufacturerTable.h"

#include "bsdl/NumberText.h"

namespace {

constexpr size_t kCodeLength = 8;
constexpr size_t kMaxNameLength = 300;
constexpr size_t kMaxSectionLength = 500;
constexpr int kMaxBank = 16; // a bank is four bits of an IDCODE

bool IsBlank(char character) {
    return character == ' ' || character == '\t';
}

bool IsBit(char character) {
    return character == '0' || character == '1';
}

// 0 if the text is no section of a bank.
int ReadBank(std::string_view section) {
    constexpr std::string_view kStart = "[Bank";
    if (!section.starts_with(kStart))
        return 0;
    const int bank = ReadLeadingNumber<int>(section.substr(kStart.size())).value_or(0);
    return bank >= 1 && bank <= kMaxBank ? bank : 0;
}

std::string MakeKey(std::string_view code, int bank) {
    std::string key(code.rbegin(), code.rend() - 1); // without the parity bit
    for (int bit = 0; bit < 4; ++bit)
        key += (((bank - 1) >> bit) & 1) != 0 ? '1' : '0';
    return key;
}

// The table's lines, a character at a time.
class TableReader {
  public:
    explicit TableReader(std::string_view key) : key_(key) {}

    // False when there is nothing more to read.
    bool Take(char character) {
        switch (state_) {
        case State::LineStart:
            StartLine(character);
            break;
        case State::Bits:
            TakeBit(character);
            break;
        case State::Gap:
            if (!IsBlank(character))
                Start(State::Name, character);
            break;
        case State::Name:
            return TakeOfName(character);
        case State::Section:
            if (text_.size() < kMaxSectionLength)
                text_ += character;
            break;
        case State::Skip:
            break;
        }
        return true;
    }

    bool EndLine() {
        const State ended = state_;
        state_ = State::LineStart;
        if (ended == State::Section) {
            bank_ = ReadBank(text_);
            return bank_ != 0;
        }
        found_ = ended == State::Name;
        return !found_;
    }

    bool Found() const { return found_; }

    // Each byte becomes one character.
    std::wstring Name() const {
        const size_t last = text_.find_last_not_of(" \t");
        std::wstring name;
        for (const char character : text_.substr(0, last + 1))
            name += static_cast<wchar_t>(static_cast<unsigned char>(character));
        return name;
    }

  private:
    enum class State { LineStart, Bits, Gap, Name, Section, Skip };

    void Start(State state, char character) {
        state_ = state;
        text_ = character;
    }

    void StartLine(char character) {
        if (character == '[')
            Start(State::Section, character);
        else if (IsBit(character))
            Start(State::Bits, character);
        else if (!IsBlank(character))
            state_ = State::Skip;
    }

    void TakeBit(char character) {
        const bool complete = text_.size() == kCodeLength;
        if (IsBit(character) && !complete)
            text_ += character;
        else if (IsBlank(character) && complete && MakeKey(text_, bank_) == key_)
            state_ = State::Gap;
        else
            state_ = State::Skip;
    }

    bool TakeOfName(char character) {
        found_ = text_.size() > kMaxNameLength;
        if (!found_)
            text_ += character;
        return !found_;
    }

    std::string_view key_;
    State state_ = State::LineStart;
    std::string text_;
    int bank_ = 1;
    bool found_ = false;
};

} // namespace

bool FindManufacturer(std::FILE* file, std::string_view key, std::wstring& name) {
    TableReader reader(key);
    bool more = true;
    while (more) {
        const int byte = std::getc(file);
        if (byte == EOF || byte == '\n' || byte == '\r')
            more = reader.EndLine() && byte != EOF;
        else
            more = reader.Take(static_cast<char>(byte));
    }
    if (reader.Found())
        name = reader.Name();
    return reader.Found();
}
