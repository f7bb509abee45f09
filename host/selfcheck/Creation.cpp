// Creates the control in each way in which a host can create it.
#include <array>

#include "host/FileStamp.h"
#include "host/selfcheck/Sample.h"
#include "host/selfcheck/Steps.h"

namespace kv::host {

namespace {

/// The file that the code of a COM object is in.
std::wstring fileOf(IUnknown* object) {
    const void* const function = **reinterpret_cast<void***>(object);
    HMODULE module = nullptr;
    std::array<wchar_t, 32768> path{};
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const wchar_t*>(function), &module);
    GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    return path.data();
}

/// Creates both classes and calls a member of each.
void tryClasses(Context& context, const wchar_t* way, const ControlClasses& classes) {
    ComPtr<_kvBandscope> control;
    ComPtr<_FreqSlot> slot;
    check(classes.control->CreateInstance(nullptr, IID__kvBandscope, reinterpret_cast<void**>(control.GetAddressOf())),
          L"Creating the control");
    check(classes.freqSlot->CreateInstance(nullptr, IID__FreqSlot, reinterpret_cast<void**>(slot.GetAddressOf())),
          L"Creating a channel record");
    SHORT width = 0;
    VARIANT_BOOL visible = VARIANT_FALSE;
    check(control->get_MinWid(&width), L"Reading MinWid");
    check(slot->get_bVisible(&visible), L"Reading bVisible");
    context.report.expect(width > 0 && visible == VARIANT_TRUE, way, fileOf(control.Get()));
}

template <class Try>
void attempt(Context& context, const wchar_t* way, Try tryIt) {
    try {
        tryIt();
    } catch (const Failure& failure) {
        context.report.failed(way, failure.text);
    }
}

ControlClasses classesByClsid() {
    ControlClasses classes;
    check(CoGetClassObject(CLSID_kvBandscope, CLSCTX_INPROC_SERVER, nullptr,
                           IID_PPV_ARGS(classes.control.GetAddressOf())),
          L"Finding the class of the control");
    check(
        CoGetClassObject(CLSID_FreqSlot, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(classes.freqSlot.GetAddressOf())),
        L"Finding the class of the channel records");
    return classes;
}

/// A manifest that is valid for this thread while the object exists.
class Activation {
  public:
    explicit Activation(const std::wstring& manifest) {
        ACTCTXW description{};
        description.cbSize = sizeof description;
        description.lpSource = manifest.c_str();
        context_ = CreateActCtxW(&description);
        if (context_ == INVALID_HANDLE_VALUE || !ActivateActCtx(context_, &cookie_)) {
            throw Failure{kExitOther, L"the manifest is not accepted, error " + std::to_wstring(GetLastError())};
        }
    }
    Activation(const Activation&) = delete;
    Activation& operator=(const Activation&) = delete;
    ~Activation() {
        DeactivateActCtx(0, cookie_);
        ReleaseActCtx(context_);
    }

  private:
    HANDLE context_ = INVALID_HANDLE_VALUE;
    ULONG_PTR cookie_ = 0;
};

ControlClasses tryRegistration(Context& context) {
    constexpr wchar_t kWay[] = L"Creation by the registered name";
    ControlClasses classes = registeredClasses();
    CLSID clsid{};
    if (classes.complete()) {
        attempt(context, kWay, [&] { tryClasses(context, kWay, classes); });
    } else if (FAILED(CLSIDFromProgID(L"kvBandscope.kvBandscope", &clsid))) {
        context.report.notPossible(kWay, L"the control is not registered for this bitness");
    } else {
        context.report.failed(kWay, L"the registered file cannot be loaded");
    }
    return classes;
}

void tryManifest(Context& context) {
    constexpr wchar_t kWay[] = L"Creation by the manifest";
    attempt(context, kWay, [&] {
        const Activation activation(context.programFolder + L"kvBandscope.manifest");
        tryClasses(context, kWay, classesByClsid());
    });
}

ControlClasses tryFile(Context& context, const std::wstring& file) {
    constexpr wchar_t kWay[] = L"Creation from the file beside the program";
    ControlClasses classes = classesOfModule(file);
    if (!classes.complete()) {
        const bool loads = LoadLibraryW(file.c_str()) != nullptr;
        context.report.failed(kWay, loads ? L"the file has no such classes"
                                          : L"the file cannot be loaded, error " + std::to_wstring(GetLastError()));
    } else {
        attempt(context, kWay, [&] { tryClasses(context, kWay, classes); });
    }
    return classes;
}

}  // namespace

void checkCreation(Context& context) {
    const std::wstring file = context.programFolder + L"kvBandscope.ocx";
    ControlClasses classes = tryRegistration(context);
    if (exists(file)) {
        tryManifest(context);
        classes = tryFile(context, file);
    } else {
        context.report.failed(L"Creation without registration", L"kvBandscope.ocx is missing beside the program");
    }
    if (classes.complete()) {
        context.classes = classes;
        context.report.fact(L"Used below", fileOf(classes.control.Get()));
    }
}

}  // namespace kv::host
