// The shared libraries come and go: unload_test FOLDER MODULE, which is linked with none of them.
// Each round registers a code page, loads the module and with it the libraries of FOLDER, uses
// them, unloads them and looks what stayed.
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <latch>
#include <string>
#include <thread>

namespace {

namespace fs = std::filesystem;

using Use = void (*)(char (&)[64]);
using FindClass = const void* (*)(const char*);

constexpr const char* kLibraries[] = {
    "liblq_data.so.1",         "liblq_host_base.so.1",    "liblq_host_model.so.1",
    "liblq_host_plcopen.so.1", "liblq_host_symbols.so.1", "liblq_host_text_source.so.1",
    "liblq_host_diff.so.1",    "liblq_host_uses.so.1",    "liblq_host_check.so.1",
};

int faults = 0;

void Check(bool holds, const std::string& what) {
    if (!holds) {
        std::printf("%s\n", what.c_str());
        ++faults;
    }
}

bool IsLoaded(const fs::path& file) {
    void* const loaded = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (loaded) {
        dlclose(loaded);
    }
    return loaded != nullptr;
}

void* Load(const fs::path& file) {
    void* const loaded = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    Check(loaded != nullptr, loaded ? "" : dlerror());
    return loaded;
}

std::string TextOf(void* module) {
    char text[64] = {};
    if (const auto use = reinterpret_cast<Use>(dlsym(module, "LqUse"))) {
        use(text);
    }
    return text;
}

// A thread that uses the module and outlives it, doing what it must before.
class Lasting {
  public:
    explicit Lasting(void* module)
        : thread_([this, module] {
              TextOf(module);
              if (const auto release = reinterpret_cast<void (*)()>(dlsym(module, "LqRelease"))) {
                  release();
              }
              used_.count_down();
              unloaded_.wait();
          }) {
        used_.wait();
    }
    ~Lasting() {
        unloaded_.count_down();
        thread_.join();
    }

  private:
    std::latch used_{1};
    std::latch unloaded_{1};
    std::thread thread_;
};

void CheckNothingStays(const std::string& round, const fs::path& folder) {
    for (const char* library : kLibraries) {
        Check(!IsLoaded(folder / library), round + ": " + library + " stays");
    }
    for (const char* page : {"1252", "932"}) {
        const std::string library = std::string("lq_data_RC_") + page + ".dll";
        Check(!IsLoaded(folder / library), round + ": " + library + " stays");
    }
}

// Whoever keeps the framework finds no class in it whose code is gone.
void KeepTheFramework(const fs::path& folder, const fs::path& module) {
    void* const user = Load(module);
    void* const framework = Load(folder / kLibraries[1]);
    TextOf(user);
    const auto find =
        reinterpret_cast<FindClass>(dlsym(framework, "_ZN13CRuntimeClass8FromNameEPKc"));
    Check(find && find("Used") && find("Scanner"), "the framework does not know the classes");
    dlclose(user);
    Check(find && !find("Used"), "the module's class stays");
    Check(find && (find("Scanner") != nullptr) == IsLoaded(folder / kLibraries[0]),
          "a class stays without its library, or goes before it");
    dlclose(framework);
    CheckNothingStays("the framework kept", folder);
}

// At the end of a process, too, what a thread keeps is kept: when no other but one that has ended
// used the library.
void* lastUsed = nullptr;

void UseLate() {
    const auto hasTexts = reinterpret_cast<bool (*)()>(dlsym(lastUsed, "LqHasTexts"));
    if (!hasTexts || !hasTexts()) {
        std::puts("nothing is kept at the end of the process");
        std::fflush(stdout);
        std::_Exit(1);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    const fs::path folder = argv[1];
    const fs::path module = argv[2];
    std::string name = (fs::temp_directory_path() / "lq_unload_XXXXXX").string();
    const fs::path temp = mkdtemp(name.data());
    const fs::path far = temp / std::string(200, 'f') / std::string(200, 'g');
    fs::create_directories(far);
    fs::create_directories(temp / "user");
    fs::copy_file(folder / kLibraries[0], far / kLibraries[0]);
    // There is no text for this code page but in the folder with the long name.
    fs::copy_file(folder / "lq_data_RC_932.dll", far / "lq_data_RC_7.dll");
    setenv("LQ_DATA_CONFIG", temp.c_str(), 1);

    const std::string english = "(64-bit value)";
    const std::string japanese = "(64ビット値)";
    const struct {
        const char* codePage;
        bool isFar;
        const std::string& text;
    } rounds[] = {{"1252", false, english}, {"932", false, japanese}, {"1252", false, english},
                  {"7", true, japanese},    {"7", false, english},    {"7", true, japanese}};
    for (const auto& round : rounds) {
        const std::string about =
            std::string("code page ") + round.codePage + (round.isFar ? ", far" : "");
        std::ofstream(temp / "user/registry.ini")
            << "[SOFTWARE\\Veldrane\\Talmor2\\App]\nCodePage=" << round.codePage << "\n";
        void* const library = round.isFar ? Load(far / kLibraries[0]) : nullptr;
        void* const user = Load(module);
        const std::string text = user ? TextOf(user) : "";
        const Lasting thread(user);
        Check(text == round.text, about + ": \"" + text + "\"");
        for (void* loaded : {user, library}) {
            if (loaded) {
                dlclose(loaded);
            }
        }
        CheckNothingStays(about, round.isFar ? far : folder);
        CheckNothingStays(about, folder);
    }
    KeepTheFramework(folder, module);
    // The loader has back what it set aside for the libraries.
    for (int round = 0; round < 100 && faults == 0; ++round) {
        void* const user = Load(module);
        Check(TextOf(user) == english, "round " + std::to_string(round));
        dlclose(user);
    }
    fs::remove_all(temp);
    lastUsed = Load(module);
    std::atexit(UseLate);  // between the end of what threads keep and that of the library
    std::thread([] { TextOf(lastUsed); }).join();
    std::printf("%d faults\n", faults);
    return faults == 0 ? 0 : 1;
}
