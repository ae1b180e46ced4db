// The host's own loader, watched: it knows what is loaded, and can keep a library or one of its
// functions from the program.
#pragma once

#include "platform/SharedLibrary.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

class SpyLoader : public OmLibraryLoader {
  public:
    SpyLoader() : host_(GetLibraryLoader()), previous_(SetLibraryLoader(this)) {}

    ~SpyLoader() override { SetLibraryLoader(previous_); }

    SpyLoader(const SpyLoader&) = delete;
    SpyLoader& operator=(const SpyLoader&) = delete;

    std::unique_ptr<OmSharedLibrary> Load(const char* windowsName) override {
        std::unique_ptr<OmSharedLibrary> library;
        if (!absent.contains(windowsName))
            library = host_.Load(windowsName);
        return library ? std::make_unique<Library>(*this, std::move(library)) : nullptr;
    }

    std::set<std::string> absent; // Windows names of libraries that are not there
    std::string missing;          // a function that no library exports
    std::vector<std::string> resolved;
    int loaded = 0; // libraries loaded and not freed

  private:
    class Library : public OmSharedLibrary {
      public:
        Library(SpyLoader& owner, std::unique_ptr<OmSharedLibrary> real)
            : owner_(owner), real_(std::move(real)) {
            ++owner_.loaded;
        }

        ~Library() override { --owner_.loaded; }

        Library(const Library&) = delete;
        Library& operator=(const Library&) = delete;

        void* Resolve(const char* name) override {
            owner_.resolved.emplace_back(name);
            return name == owner_.missing ? nullptr : real_->Resolve(name);
        }

      private:
        SpyLoader& owner_;
        std::unique_ptr<OmSharedLibrary> real_;
    };

    OmLibraryLoader& host_;
    OmLibraryLoader* previous_;
};
