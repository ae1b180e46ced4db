#include "bsdl/BsdlFinder.h"

#include "bsdl/BsdlFinderThread.h"
#include "tests/bsdl/BsdlSource.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <condition_variable>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mutex>
#include <set>
#include <wx/init.h>

namespace {

struct Event {
    wxEventType type;
    std::string text;

    bool operator==(const Event&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Event& event) {
    const char* name = event.type == OM_EVT_BSDL_FILE    ? "file"
                       : event.type == OM_EVT_BSDL_FOUND ? "found"
                       : event.type == OM_EVT_BSDL_LOG   ? "log"
                                                         : "done";
    return stream << name << " '" << event.text << "'";
}

// Takes events as they are handed over, on the finder's thread.
class Collector : public wxEvtHandler {
  public:
    void QueueEvent(wxEvent* event) override {
        const std::unique_ptr<wxEvent> owned(event);
        const Event taken = {event->GetEventType(),
                             static_cast<wxCommandEvent&>(*event).GetString().utf8_string()};
        const std::lock_guard lock(mutex_);
        events_.push_back(taken);
        changed_.notify_all();
        if (onEvent)
            onEvent(events_);
    }

    // All events, once `count` searches have ended.
    std::vector<Event> WaitForDone(size_t count = 1) {
        return Wait([count](const std::vector<Event>& events) {
            return Count(events, OM_EVT_BSDL_DONE) >= count;
        });
    }

    std::vector<Event> WaitForEvents(size_t count) {
        return Wait([count](const std::vector<Event>& events) { return events.size() >= count; });
    }

    std::vector<Event> Events() {
        const std::lock_guard lock(mutex_);
        return events_;
    }

    void Forget() {
        const std::lock_guard lock(mutex_);
        events_.clear();
    }

    static size_t Count(const std::vector<Event>& events, wxEventType type) {
        return static_cast<size_t>(std::ranges::count(events, type, &Event::type));
    }

    // Called on the finder's thread with all events so far. Set before the search.
    std::function<void(const std::vector<Event>&)> onEvent;

  private:
    template <typename Condition>
    std::vector<Event> Wait(Condition condition) {
        std::unique_lock lock(mutex_);
        EXPECT_TRUE(
            changed_.wait_for(lock, std::chrono::seconds(120), [&] { return condition(events_); }));
        return events_;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Event> events_;
};

constexpr const char* kIdcode = "00000001001000110100000000101111";
constexpr const char* kPattern = "XXXX0001001000110100000000101111"; // of the sample

class BsdlFinder : public testing::Test {
  protected:
    BsdlFinder() { finder.SetIdcode(BitsFromText(kIdcode)); }

    void SetUp() override { ASSERT_TRUE(toolkit.IsOk()); }

    std::string Write(const std::string& name, const std::string& source = SampleSource()) {
        return folder.Write(name, source);
    }

    std::string MakeFolder(const std::string& name) {
        std::filesystem::create_directory(folder.path / name);
        return folder.Path(name);
    }

    std::vector<Event> Search(const std::vector<std::string>& directories) {
        finder.SetDirectories(directories);
        finder.StartSearch();
        return collector.WaitForDone();
    }

    std::vector<Event> Search() { return Search({folder.path.string()}); }

    static Event Found(const std::string& path, const std::string& pattern = kPattern) {
        return {OM_EVT_BSDL_FOUND, path + ";Chip;QFP_8;" + pattern};
    }

    wxInitializer toolkit;
    TemporaryFolder folder;
    Collector collector;
    OmBsdlFinder finder{&collector};
};

// Functions, because the event types get their numbers at start-up.
Event Completed() {
    return {OM_EVT_BSDL_DONE, "completed"};
}

Event Canceled() {
    return {OM_EVT_BSDL_DONE, "canceled"};
}

using Events = std::vector<Event>;

} // namespace

TEST_F(BsdlFinder, ReportsAFileThatFits) {
    const std::string path = Write("chip.bsd");
    EXPECT_EQ(Search(), (Events{{OM_EVT_BSDL_FILE, path}, Found(path), Completed()}));
}

TEST_F(BsdlFinder, NamesAllPinMappings) {
    const std::string path =
        Write("chip.bsd", ChangedSource("attribute TAP_SCAN_IN",
                                        "constant BGA : PIN_MAP_STRING := \"TCK : A1\";"
                                        "attribute TAP_SCAN_IN"));
    EXPECT_EQ(Search()[1],
              (Event{OM_EVT_BSDL_FOUND, path + ";Chip;BGA, QFP_8;" + std::string(kPattern)}));
}

TEST_F(BsdlFinder, SaysNothingOfAFileThatDoesNotFit) {
    const std::string path = Write("chip.bsd");
    finder.SetIdcode(BitsFromText("00000001001000110100000000101101"));
    EXPECT_EQ(Search(), (Events{{OM_EVT_BSDL_FILE, path}, Completed()}));
}

TEST_F(BsdlFinder, SaysNothingOfAFileWithoutIdcodes) {
    const std::string path = Write(
        "chip.bsd", ChangedSource("attribute IDCODE_REGISTER", "attribute USERCODE_REGISTER"));
    EXPECT_EQ(Search(), (Events{{OM_EVT_BSDL_FILE, path}, Completed()}));
}

TEST_F(BsdlFinder, AcceptsAnotherVersionOfTheChip) {
    const std::string pattern = "01000001001000110100000000101111";
    const std::string path = Write("chip.bsd", ChangedSource("\"XXXX\"", "\"0100\""));
    EXPECT_EQ(Search(), (Events{{OM_EVT_BSDL_FILE, path}, Found(path, pattern), Completed()}));
}

TEST_F(BsdlFinder, LogsPatternsOfAnotherLength) {
    const std::string path = Write("chip.bsd", ChangedSource("\"XXXX\"", "\"01, XXXX\""));
    EXPECT_EQ(Search(),
              (Events{{OM_EVT_BSDL_FILE, path},
                      {OM_EVT_BSDL_LOG, "Error: (in '" + path +
                                            "') semantic error\n"
                                            "        : IDCODE_REGISTER pattern must have 32 bit "
                                            "length\n"},
                      Found(path),
                      Completed()}));
}

TEST_F(BsdlFinder, LogsAFileThatDoesNotParseAndGoesOn) {
    const std::string first = MakeFolder("1");
    const std::string second = MakeFolder("2");
    const std::string bad = Write("1/bad.bsd", "entity\n4");
    const std::string good = Write("2/good.bsd");
    EXPECT_EQ(Search({first, second}),
              (Events{{OM_EVT_BSDL_FILE, bad},
                      {OM_EVT_BSDL_LOG, "Error: (in '" + bad +
                                            "' on line 2) syntax error\n"
                                            "        : improper entity declaration; may be this "
                                            "is not a BSDL file\n"},
                      {OM_EVT_BSDL_FILE, good},
                      Found(good),
                      Completed()}));
}

TEST_F(BsdlFinder, ParsesFilesByTheirExtension) {
    for (const char* name : {"a.bsd", "b.BSDL", "c.Bsm", ".bsd", ".hidden.bsd"})
        Write(name);
    for (const char* name : {"a.txt", "b.bsd.txt", "cbsd", "d.bsdx", "e.bs"})
        Write(name);
    const Events events = Search();
    EXPECT_EQ(Collector::Count(events, OM_EVT_BSDL_FILE), 5u);
    EXPECT_EQ(Collector::Count(events, OM_EVT_BSDL_FOUND), 5u);
    EXPECT_EQ(events.size(), 11u);
}

TEST_F(BsdlFinder, SearchesFilesBeforeFoldersAndFoldersToAnyDepth) {
    MakeFolder(".sub");
    MakeFolder(".sub/deep");
    const std::string top = Write("top.bsd");
    const std::string sub = Write(".sub/sub.bsd");
    const std::string deep = Write(".sub/deep/deep.bsd");
    EXPECT_EQ(Search(), (Events{{OM_EVT_BSDL_FILE, top},
                                Found(top),
                                {OM_EVT_BSDL_FILE, sub},
                                Found(sub),
                                {OM_EVT_BSDL_FILE, deep},
                                Found(deep),
                                Completed()}));
}

TEST_F(BsdlFinder, GoesToTheBottomOfAFolderBeforeItTakesTheNext) {
    Events either;
    Events other;
    for (const char* name : {"a", "b"}) {
        const std::string sub = name;
        MakeFolder(sub);
        MakeFolder(sub + "/deep");
        const std::string file = Write(sub + "/sub.bsd");
        const std::string deep = Write(sub + "/deep/deep.bsd");
        const Events both{
            {OM_EVT_BSDL_FILE, file}, Found(file), {OM_EVT_BSDL_FILE, deep}, Found(deep)};
        either.insert(either.end(), both.begin(), both.end());
        other.insert(other.begin(), both.begin(), both.end());
    }
    either.push_back(Completed());
    other.push_back(Completed());
    EXPECT_THAT(Search(), testing::AnyOf(either, other)); // as the system lists them
}

TEST_F(BsdlFinder, SearchesDirectoriesInOrderEvenTwice) {
    const std::string path = Write("chip.bsd");
    const std::string directory = folder.path.string();
    const Events events = Search({directory, directory});
    EXPECT_EQ(events, (Events{{OM_EVT_BSDL_FILE, path},
                              Found(path),
                              {OM_EVT_BSDL_FILE, path},
                              Found(path),
                              Completed()}));
}

TEST_F(BsdlFinder, LinksThatLeadBackAreNotFollowedForEver) {
    MakeFolder("sub");
    Write("sub/chip.bsd");
    for (const char* link : {"sub/one", "sub/two", "three"})
        std::filesystem::create_directory_symlink(folder.path, folder.path / link);
    EXPECT_EQ(Collector::Count(Search(), OM_EVT_BSDL_FILE), 1u);
}

// Folders that came from another system hold names that are no text here.
TEST_F(BsdlFinder, NamesThatAreNoTextDoNotEndTheSearch) {
    MakeFolder("caf\xE9");
    std::ofstream(folder.path / "caf\xE9" / "inner.bsd") << SampleSource();
    std::ofstream(folder.path / "na\xEFve.bsd") << SampleSource();
    const std::string path = Write("plain.bsd");
    const Events events = Search();
    EXPECT_EQ(std::ranges::count(events, Found(path)), 1);
    EXPECT_EQ(Collector::Count(events, OM_EVT_BSDL_LOG), 1u) << "the other file cannot be opened";
    EXPECT_EQ(events.back(), Completed());
}

TEST_F(BsdlFinder, LogsADirectoryThatCannotBeOpened) {
    const std::string missing = folder.Path("missing");
    const std::string path = Write("chip.bsd");
    EXPECT_EQ(Search({missing, folder.path.string()}),
              (Events{{OM_EVT_BSDL_LOG, "Cannot open directory '" + missing + "'\n"},
                      {OM_EVT_BSDL_FILE, path},
                      Found(path),
                      Completed()}));
}

TEST_F(BsdlFinder, LogsEachFolderThatVanishesDuringTheSearch) {
    const std::string subs[] = {MakeFolder("one"), MakeFolder("two")};
    const std::string path = Write("chip.bsd");
    collector.onEvent = [&subs](const Events&) {
        for (const std::string& sub : subs)
            std::filesystem::remove(sub);
    };
    const Events events = Search();
    ASSERT_EQ(events.size(), 5u);
    EXPECT_EQ(events[0], (Event{OM_EVT_BSDL_FILE, path}));
    EXPECT_EQ(events[1], Found(path));
    for (const std::string& sub : subs)
        EXPECT_EQ(std::ranges::count(
                      events, Event{OM_EVT_BSDL_LOG, "Cannot open directory '" + sub + "'\n"}),
                  1);
    EXPECT_EQ(events[4], Completed());
}

TEST_F(BsdlFinder, WithNothingToSearchCompletesAtOnce) {
    EXPECT_EQ(Search({}), Events{Completed()});
}

TEST_F(BsdlFinder, CancelTakesEffectAtTheNextFile) {
    Write("one.bsd");
    Write("other.bsd");
    collector.onEvent = [](const Events&) { OmBsdlSearchFlags::Cancel(); };
    const Events events = Search();
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[0].type, OM_EVT_BSDL_FILE);
    EXPECT_EQ(events[1], Found(events[0].text)); // its parse is not cut short
    EXPECT_EQ(events[2], Canceled());
}

TEST_F(BsdlFinder, CancelTakesEffectAtTheNextDirectory) {
    const std::string first = MakeFolder("1");
    const std::string second = MakeFolder("2");
    const std::string path = Write("1/chip.bsd");
    Write("2/chip.bsd");
    collector.onEvent = [](const Events&) { OmBsdlSearchFlags::Cancel(); };
    EXPECT_EQ(Search({first, second, folder.Path("missing")}),
              (Events{{OM_EVT_BSDL_FILE, path}, Found(path), Canceled()}));
}

TEST_F(BsdlFinder, NothingComesAfterACancelHasReturned) {
    for (int number = 0; number < 60; ++number)
        Write(std::to_string(number) + ".bsd");
    finder.SetDirectories({folder.path.string()});
    size_t before = 0;
    for (size_t wait = 0; wait < 20; ++wait) {
        finder.StartSearch();
        collector.WaitForEvents(before + wait);
        finder.CancelSearch();
        const Events events = collector.Events();
        ASSERT_FALSE(events.empty());
        EXPECT_EQ(events.back(), Canceled()) << wait;
        EXPECT_EQ(Collector::Count(events, OM_EVT_BSDL_DONE), wait + 1);
        wxMilliSleep(2);
        EXPECT_EQ(collector.Events().size(), events.size());
        before = events.size();
    }
}

TEST_F(BsdlFinder, CancelWithoutASearchReturnsAtOnce) {
    finder.CancelSearch();
    finder.CancelSearch();
    EXPECT_TRUE(collector.Events().empty());
    EXPECT_EQ(Search({}), Events{Completed()});
}

TEST_F(BsdlFinder, NewSearchEndsTheOneBefore) {
    for (int number = 0; number < 200; ++number)
        Write(std::to_string(number) + ".bsd");
    finder.SetDirectories({folder.path.string()});
    finder.StartSearch();
    collector.WaitForEvents(5);
    finder.SetDirectories({});
    finder.StartSearch();
    const Events events = collector.WaitForDone(2);
    ASSERT_GE(events.size(), 7u);
    EXPECT_EQ(events[events.size() - 2], Canceled());
    EXPECT_EQ(events.back(), Completed());
}

TEST_F(BsdlFinder, DestructorEndsTheSearch) {
    for (int number = 0; number < 200; ++number)
        Write(std::to_string(number) + ".bsd");
    {
        OmBsdlFinder shortLived(&collector);
        shortLived.SetIdcode(BitsFromText(kIdcode));
        shortLived.SetDirectories({folder.path.string()});
        shortLived.StartSearch();
        collector.WaitForEvents(3);
    }
    EXPECT_EQ(collector.Events().back(), Canceled());
}

namespace {

// 2,000 BSDL files ten folders deep and ten wide, with others among them: most describe other
// devices, some are broken, some cannot be opened.
class ManyFiles : public BsdlFinder {
  protected:
    ManyFiles() {
        const std::string other = ChangedSource("\"1\";", "\"0\";");
        for (int number = 0; number < 2000; ++number) {
            const std::string name = FolderOf(number) + std::to_string(number) + ".bsd";
            if (number % 100 == 7)
                fitting.insert(Write(name));
            else if (number % 100 == 50)
                broken.insert(Write(name, "entity\n4"));
            else if (number % 100 == 93)
                unreadable.insert(MakeDanglingLink(name));
            else
                others.insert(Write(name, other));
            if (number % 10 == 0)
                Write(FolderOf(number) + std::to_string(number) + ".txt", "entity");
        }
    }

    // A new folder for every twenty files; ten stand beside each other, each with nine more in it.
    std::string FolderOf(int number) {
        const int row = number / 20;
        std::string path;
        for (int depth = 0; depth <= row % 10; ++depth)
            path += (depth == 0 ? "row" + std::to_string(row / 10) : "deeper") + "/";
        std::filesystem::create_directories(folder.path / path);
        return path;
    }

    std::string MakeDanglingLink(const std::string& name) const {
        std::filesystem::create_symlink("nowhere", folder.path / name);
        return folder.Path(name);
    }

    // What is said of a file, apart from its name.
    Events ExpectedOf(const std::string& path) const {
        if (fitting.contains(path))
            return {Found(path)};
        if (broken.contains(path))
            return {{OM_EVT_BSDL_LOG, "Error: (in '" + path +
                                          "' on line 2) syntax error\n"
                                          "        : improper entity declaration; may be this "
                                          "is not a BSDL file\n"}};
        if (unreadable.contains(path))
            return {{OM_EVT_BSDL_LOG, "Error: failed to open file '" + path + "'\n"}};
        EXPECT_TRUE(others.contains(path)) << path;
        return {};
    }

    // Each file is named once and followed by what is to be said of it. The last event is
    // `ending`. Gives the number of files.
    size_t ExpectWhole(const Events& events, const Event& ending) {
        std::set<std::string> seen;
        size_t next = 0;
        while (next < events.size() && events[next].type == OM_EVT_BSDL_FILE) {
            const std::string path = events[next++].text;
            EXPECT_TRUE(seen.insert(path).second) << path;
            for (const Event& event : ExpectedOf(path)) {
                EXPECT_TRUE(next < events.size() && events[next] == event) << event;
                ++next;
            }
        }
        EXPECT_EQ(next, events.size() - 1);
        EXPECT_EQ(events.back(), ending);
        return seen.size();
    }

    std::set<std::string> fitting, broken, unreadable, others;
};

} // namespace

TEST_F(ManyFiles, AreSearchedInAllFoldersWhateverIsInThem) {
    EXPECT_EQ(ExpectWhole(Search(), Completed()), 2000u);
}

TEST_F(ManyFiles, CanBeLeftAtAnyMoment) {
    finder.SetDirectories({folder.path.string()});
    for (size_t moment = 0; moment < 25; ++moment) {
        SCOPED_TRACE(moment);
        collector.Forget();
        finder.StartSearch();
        collector.WaitForEvents(moment * moment / 4);
        finder.CancelSearch();
        EXPECT_LT(ExpectWhole(collector.Events(), Canceled()), 2000u);
    }
}

TEST_F(BsdlFinder, LogOfTheThreadBecomesEvents) {
    OmLogString log(&collector);
    wxLog* const previous = wxLog::SetActiveTarget(&log);
    wxLogError("disk on fire");
    wxLogMessage("carry on");
    wxLog::SetActiveTarget(previous);
    EXPECT_EQ(collector.Events(), (Events{{OM_EVT_BSDL_LOG, "Error: disk on fire\n"},
                                          {OM_EVT_BSDL_LOG, "carry on\n"}}));
}
