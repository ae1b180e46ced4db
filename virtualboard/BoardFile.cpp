#include "virtualboard/BoardFile.h"

#include "virtualboard/BoardFaults.h"
#include "virtualboard/Numbers.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace vb {

namespace {

std::string ReadWhole(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot open '" + path.string() + "'");
    return {std::istreambuf_iterator<char>(file), {}};
}

// Words are separated by blanks; a double-quoted part may hold some. '#' begins a comment.
std::vector<std::string> SplitLine(const std::string& line) {
    std::vector<std::string> words;
    std::string word;
    bool quoted = false;
    bool begun = false;
    for (char c : line) {
        if (c == '"') {
            quoted = !quoted;
            begun = true;
        } else if (!quoted && c == '#') {
            break;
        } else if (!quoted && (c == ' ' || c == '\t' || c == '\r')) {
            if (begun)
                words.push_back(std::move(word));
            word.clear();
            begun = false;
        } else {
            word += c;
            begun = true;
        }
    }
    if (begun)
        words.push_back(word);
    return words;
}

struct Option {
    std::string key;
    std::string value;
};

Option SplitOption(const std::string& word) {
    const size_t sign = word.find('=');
    if (sign == std::string::npos)
        throw std::runtime_error("'" + word + "' is not of the form key=value");
    return {word.substr(0, sign), word.substr(sign + 1)};
}

bool YesOrNo(const std::string& text) {
    if (text != "yes" && text != "no")
        throw std::runtime_error("'" + text + "' is neither yes nor no");
    return text == "yes";
}

using Words = std::vector<std::string>;

constexpr int kDeepestInclude = 8;

class Reader {
    struct Keyword {
        const char* name;
        size_t leastArguments;
        void (Reader::*handler)(const Words& words);
    };

  public:
    Reader(Board& board, std::string folder, BsdlSource bsdl)
        : board_(board), folder_(std::move(folder)), bsdl_(std::move(bsdl)) {}

    void Text(const std::string& text) {
        std::istringstream lines(text);
        std::string line;
        for (int number = 1; std::getline(lines, line); ++number) {
            try {
                const Words words = SplitLine(line);
                if (!words.empty())
                    Line(words);
            } catch (const std::exception& error) {
                throw std::runtime_error("line " + std::to_string(number) + ": " + error.what());
            }
        }
    }

    void Line(const Words& words) {
        static constexpr Keyword kKeywords[] = {
            {"device", 2, &Reader::Device}, {"flash", 1, &Reader::Flash},
            {"net", 2, &Reader::Net},       {"pull", 2, &Reader::Pull},
            {"tie", 2, &Reader::Tie},       {"poke", 3, &Reader::Poke},
            {"pod", 1, &Reader::Pod},       {"time", 1, &Reader::Time},
            {"fault", 1, &Reader::Fault},   {"include", 1, &Reader::Include},
        };
        for (const Keyword& keyword : kKeywords) {
            if (words[0] != keyword.name)
                continue;
            if (words.size() <= keyword.leastArguments)
                throw std::runtime_error("'" + words[0] + "' needs more than that");
            return (this->*keyword.handler)(words);
        }
        throw std::runtime_error("'" + words[0] + "' is no keyword");
    }

  private:
    std::filesystem::path InFolder(const std::string& name) const {
        return std::filesystem::path(folder_) / name;
    }

    void Device(const Words& words) { board_.AddDevice(words[1], bsdl_(words[2])); }

    void Include(const Words& words) {
        if (++depth_ > kDeepestInclude)
            throw std::runtime_error("too many files within files");
        Text(ReadWhole(InFolder(words[1])));
        --depth_;
    }

    void Flash(const Words& words) {
        FlashParameters parameters;
        std::string contents;
        std::string state;
        for (size_t i = 2; i < words.size(); ++i) {
            const auto [key, value] = SplitOption(words[i]);
            if (key == "model")
                parameters = FlashByName(value);
            else if (key == "contents")
                contents = InFolder(value).string();
            else if (key == "state")
                state = InFolder(value).string();
            else
                SetFlashParameter(parameters, key, value);
        }
        board_.AddFlash(words[1], parameters);
        if (!contents.empty())
            board_.KeepContents(words[1], contents);
        if (!state.empty())
            board_.KeepState(words[1], state);
    }

    void Net(const Words& words) {
        for (size_t i = 2; i < words.size(); ++i)
            board_.Connect(words[1], words[i]);
    }

    void Pull(const Words& words) { board_.Pull(words[1], words[2] == "up"); }

    void Tie(const Words& words) { board_.Tie(words[1], words[2] == "1"); }

    void Poke(const Words& words) {
        FlashSocket* socket = board_.FindFlash(words[1]);
        if (!socket)
            throw std::runtime_error("there is no flash '" + words[1] + "'");
        socket->Model().SetWord(ParseNumber(words[2]), ParseNumber(words[3]));
    }

    void Pod(const Words& words) {
        PodEntry entry;
        for (size_t i = 2; i < words.size(); ++i)
            PodOption(entry, SplitOption(words[i]));
        entry.type = PodTypeNamed(words[1]);
        board_.Pods().entries.push_back(entry);
    }

    static void PodOption(PodEntry& entry, const Option& option) {
        if (option.key == "description")
            entry.description = option.value;
        else if (option.key == "serial")
            entry.serial = option.value;
        else if (option.key == "open")
            entry.open = YesOrNo(option.value);
        else if (option.key == "connected")
            entry.onThisBoard = YesOrNo(option.value);
        else if (option.key == "rtck")
            entry.returnClock = YesOrNo(option.value);
        else if (option.key == "usb-id")
            entry.usbId = static_cast<uint32_t>(ParseNumber(option.value));
        else if (option.key == "needs-low")
            entry.needsLow = static_cast<uint16_t>(ParseNumber(option.value));
        else if (option.key == "needs-high")
            entry.needsHigh = static_cast<uint16_t>(ParseNumber(option.value));
        else
            throw std::runtime_error("a pod has no property '" + option.key + "'");
    }

    static PodType PodTypeNamed(const std::string& name) {
        struct TypeName {
            const char* name;
            PodType type;
        };

        constexpr TypeName kTypes[] = {
            {"FT2232H", PodType::Ft2232H}, {"FT2232C", PodType::Ft2232C},
            {"FT232R", PodType::Ft232R},   {"USB-Blaster", PodType::UsbBlaster},
            {"J-Link", PodType::JLink},    {"Digilent", PodType::Digilent},
            {"other", PodType::Other},
        };
        for (const TypeName& row : kTypes)
            if (name == row.name)
                return row.type;
        throw std::runtime_error("no pod type is called '" + name + "'");
    }

    void Time(const Words& words) {
        if (words[1] != "tck" && words[1] != "sleeps")
            throw std::runtime_error("time is counted by 'tck' or 'sleeps'");
        board_.Pods().idleTime = words[1] == "sleeps" ? IdleTime::Sleeps : IdleTime::None;
    }

    void Fault(const Words& words) { AddFault(board_, {words.begin() + 1, words.end()}); }

    Board& board_;
    std::string folder_;
    BsdlSource bsdl_;
    int depth_ = 0; // of files within files
};

std::unique_ptr<Board> ReadLines(const std::string& text, const std::string& folder,
                                 const BsdlSource& bsdl) {
    auto board = std::make_unique<Board>();
    Reader(*board, folder, bsdl).Text(text);
    if (board->Pods().entries.empty())
        board->Pods().entries.emplace_back();
    board->PowerUp();
    return board;
}

} // namespace

std::unique_ptr<Board> ReadBoard(const std::string& text, const std::string& folder) {
    return ReadLines(text, folder, [&folder](const std::string& name) {
        return ReadWhole(std::filesystem::path(folder) / name);
    });
}

std::unique_ptr<Board> ReadBoard(const std::string& text, const BsdlSource& bsdl) {
    return ReadLines(text, "", bsdl);
}

std::unique_ptr<Board> LoadBoard(const std::string& path) {
    const std::filesystem::path file(path);
    try {
        return ReadBoard(ReadWhole(file), file.parent_path().string());
    } catch (const std::exception& error) {
        throw std::runtime_error(path + ": " + error.what());
    }
}

void AddBoardLine(Board& board, const std::string& line) {
    const Words words = SplitLine(line);
    if (!words.empty())
        Reader(board, "", ReadWhole).Line(words);
}

} // namespace vb
