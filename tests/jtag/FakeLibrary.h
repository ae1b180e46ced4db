// A loader whose libraries live in the test itself: it knows what is loaded and can leave out a
// library or a single function.
#pragma once

#include "platform/SharedLibrary.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

class FakeLoader : public OmLibraryLoader {
  public:
    using Exports = std::map<std::string, void*>;

    FakeLoader() : previous_(SetLibraryLoader(this)) {}

    ~FakeLoader() override { SetLibraryLoader(previous_); }

    FakeLoader(const FakeLoader&) = delete;
    FakeLoader& operator=(const FakeLoader&) = delete;

    std::unique_ptr<OmSharedLibrary> Load(const char* windowsName) override {
        asked.push_back(windowsName);
        if (!libraries.contains(windowsName))
            return nullptr;
        return std::make_unique<Library>(*this);
    }

    std::set<std::string> libraries; // those that can be loaded
    Exports exports;                 // what each of them exports
    std::string missing;             // but for this function
    std::vector<std::string> asked;  // names, in order
    int loaded = 0;                  // libraries loaded and not freed

  private:
    class Library : public OmSharedLibrary {
      public:
        explicit Library(FakeLoader& owner) : owner_(owner) { ++owner_.loaded; }

        ~Library() override { --owner_.loaded; }

        Library(const Library&) = delete;
        Library& operator=(const Library&) = delete;

        void* Resolve(const char* name) override {
            const auto found = owner_.exports.find(name);
            return found == owner_.exports.end() || owner_.missing == name ? nullptr
                                                                           : found->second;
        }

      private:
        FakeLoader& owner_;
    };

    OmLibraryLoader* previous_;
};

// The address of a function as a library exports it.
template <typename Function>
void* Export(Function* function) {
    return reinterpret_cast<void*>(function);
}
