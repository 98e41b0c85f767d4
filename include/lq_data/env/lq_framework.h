// What the library requires of the application framework: a root object class with run-time class
// names and creation by name, extension modules, a current resource module, a module's file name,
// the registry, and integers of a settings file.
//
// Declared here, defined by the embedding environment (host/ holds the default).
//
// No translation unit can include it, or what includes it, together with another framework's header
// that declares CObject, CRuntimeClass, HINSTANCE, HKEY, HWND, REG_SZ, ERROR_SUCCESS or functions
// such as AfxLoadLibrary and RegCloseKey, or defines macros of these names.
#pragma once

#include <cstddef>
#include <cstdint>

#include "lq_data/memory.h"

class CObject;

// Describes a class at run time. One static object a class; the descriptions of all loaded classes
// form one chain, so that a class can be found and its objects created by name, also while another
// thread loads a module; not while one unloads a module.
struct LQ_DATA_API CRuntimeClass {
    const char* name;           // as written in the source
    const CRuntimeClass* base;  // null for CObject
    CObject* (*create)();       // null when objects cannot be created by name
    const CRuntimeClass* next;  // the chain; filled by AFX_CLASSINIT

    // A new object, owned by the caller; null when the class does not allow it or memory is short.
    CObject* CreateObject() const { return create ? create() : nullptr; }
    // Whether this is the other class, or derived from it.
    bool IsDerivedFrom(const CRuntimeClass* other) const;

    // The class of that name, or null.
    static const CRuntimeClass* FromName(const char* name);
    // A new object of the class of that name, or null.
    static CObject* CreateObject(const char* name);
};

// Keeps a class in the chain from its module's load to its unload; one static object a class. A
// class that several objects name is there once, until the last of them is gone.
class LQ_DATA_API AFX_CLASSINIT {
  public:
    explicit AFX_CLASSINIT(CRuntimeClass* cls);
    ~AFX_CLASSINIT();
    AFX_CLASSINIT(const AFX_CLASSINIT&) = delete;
    AFX_CLASSINIT& operator=(const AFX_CLASSINIT&) = delete;

  private:
    static bool IsRegistered(const CRuntimeClass* cls);

    CRuntimeClass* cls_;
    AFX_CLASSINIT* next_;  // the chain of all living objects of this class
};

// The root of the classes with a run-time class name. `new` of a derived class yields null when
// memory is short.
class LQ_DATA_API CObject {
  public:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
    virtual ~CObject() = default;

    // The description of the object's class.
    virtual const CRuntimeClass* GetRuntimeClass() const;
    // Whether the object is of that class or one derived from it.
    bool IsKindOf(const CRuntimeClass* cls) const { return GetRuntimeClass()->IsDerivedFrom(cls); }

    LQ_ALLOCATED

    static CRuntimeClass classCObject;
};

// In a class: declares its description.
#define LQ_DECLARE_DYNAMIC(cls)      \
  public:                            \
    static CRuntimeClass class##cls; \
    const CRuntimeClass* GetRuntimeClass() const override;

// In one source file: defines it. `creator` is the class's CreateObject function or nullptr.
#define LQ_IMPLEMENT_DYNAMIC(cls, baseCls, creator)                                     \
    CRuntimeClass cls::class##cls = {#cls, &baseCls::class##baseCls, creator, nullptr}; \
    const CRuntimeClass* cls::GetRuntimeClass() const {                                 \
        return &cls::class##cls;                                                        \
    }                                                                                   \
    static const AFX_CLASSINIT init_class##cls(&cls::class##cls);

// A loaded module. AfxLoadLibrary makes them; an extension library defines its own, statically,
// because its file name need not tell its name (liblq_data.so) and it may be linked into a program.
struct LQ_MODULE {
    const char16_t* name = nullptr;  // file name without folder and extension; null: the file's own
    const void* address = nullptr;   // anything inside the module; null: the running program
    void* loader = nullptr;          // what the system's loader returned; null when not loaded here
    const struct LQ_STRING_TABLE* strings = nullptr;  // the string resources, or null
};
using HINSTANCE = LQ_MODULE*;  // null is no module

// The framework's record of an extension library.
struct AFX_EXTENSION_MODULE {
    int bInitialized = 0;
    HINSTANCE hModule = nullptr;
};

// Non-zero for success; fills the record. Fails without a module and leaves the record alone.
LQ_DATA_API int AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HINSTANCE module);
// Deletes the module's per-library objects (with `all` non-zero those of every module) and empties
// the record.
LQ_DATA_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, int all = 0);

// Enters an extension library into the application's search chain. Created with `new` and never
// deleted by the creator: the framework owns it.
class LQ_DATA_API CDynLinkLibrary : public CObject {
    LQ_DECLARE_DYNAMIC(CDynLinkLibrary)
  public:
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& state);
    ~CDynLinkLibrary() override;
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;

    HINSTANCE module;
    CDynLinkLibrary* nextLibrary;
};

// Loads a library by file name; null when it cannot be loaded or memory is short. A name without a
// folder is looked for in the folder that the environment variable LQ_DATA_RESOURCES names, in
// those of the extension libraries, in the running program's, and in ../lib of that; the default
// looks in each for a folder of the library's major version first ("lq_data-1"), where the
// installed resource libraries are, so that several versions may be.
LQ_DATA_API HINSTANCE AfxLoadLibrary(const char16_t* name);
// Unloads what AfxLoadLibrary loaded and ends the handle's life. Non-zero for success; 0 for null
// and for a module that AfxLoadLibrary did not load.
LQ_DATA_API int AfxFreeLibrary(HINSTANCE module);

// The module that string loading on the calling thread consults: the application's own until
// another is set there; null for none. The default's application module has the English texts of
// the library's resources.
LQ_DATA_API HINSTANCE AfxGetResourceHandle();
// Makes another module the one that string loading on the calling thread consults.
LQ_DATA_API void AfxSetResourceHandle(HINSTANCE module);

// Copies the full file name of `module`, null meaning the running program: at most `size` - 1
// characters and a terminator. Returns the number of characters copied, 0 on failure; a name that
// is cut gives `size` - 1 or more, and the caller asks again with more room. For a module with a
// name of its own it is that name, ending in ".so", in the folder of the file that holds the
// module.
LQ_DATA_API uint32_t GetModuleFileNameW(HINSTANCE module, char16_t* buffer, uint32_t size);

// Registry. Results are 0 for success, else one of these.
inline constexpr int32_t ERROR_SUCCESS = 0;
inline constexpr int32_t ERROR_FILE_NOT_FOUND = 2;  // no such key or value
inline constexpr int32_t ERROR_INVALID_HANDLE = 6;
inline constexpr int32_t ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr int32_t ERROR_INVALID_PARAMETER = 87;
inline constexpr int32_t ERROR_MORE_DATA = 234;  // `data` is too small
// Types of values.
inline constexpr uint32_t REG_SZ = 1;     // 16-bit text, terminated
inline constexpr uint32_t REG_DWORD = 4;  // 32-bit number

struct LQ_REGISTRY_KEY;
using HKEY = LQ_REGISTRY_KEY*;
LQ_DATA_API extern const HKEY HKEY_CURRENT_USER;
LQ_DATA_API extern const HKEY HKEY_LOCAL_MACHINE;
inline constexpr uint32_t KEY_READ = 0x20019;

// On success `*key` is an open key, to be closed with RegCloseKey; else it is null.
LQ_DATA_API int32_t RegOpenKeyExW(HKEY root, const char16_t* path, uint32_t options,
                                  uint32_t access, HKEY* key);
// `*size` comes in as the capacity of `data` in bytes and leaves as the size of the value. `data`
// and `type` may be null; `data` is written on success only.
LQ_DATA_API int32_t RegQueryValueExW(HKEY key, const char16_t* name, uint32_t* reserved,
                                     uint32_t* type, unsigned char* data, uint32_t* size);
// Closes a key that RegOpenKeyExW opened.
LQ_DATA_API int32_t RegCloseKey(HKEY key);

// The integer at `key` of `section` in the settings file `file`, or `fallback` when the file, the
// section or the key is missing or its value is empty. An integer is decimal with an optional sign,
// or hexadecimal after 0x; it ends at the first other character, so that a word counts as 0, and
// wraps modulo 2^32. Names match in any case.
LQ_DATA_API uint32_t GetPrivateProfileIntW(const char16_t* section, const char16_t* key,
                                           int32_t fallback, const char16_t* file);
