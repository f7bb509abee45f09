// Writes the content of a type library file as text. Values that depend only on the architecture are left out or
// counted in pointers, so that the libraries of both architectures can be compared line by line.
//   kv_typelib_dump FILE
#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <cstdio>
#include <string>

namespace {

using Microsoft::WRL::ComPtr;

std::string narrow(const wchar_t* text) {
    std::string result;
    for (; text && *text; ++text)
        result += *text < 0x80 ? static_cast<char>(*text) : '?';
    return result;
}

std::string taken(BSTR text) {
    std::string result = narrow(text);
    SysFreeString(text);
    return result;
}

std::string idText(REFGUID guid) {
    wchar_t text[40] = L"";
    StringFromGUID2(guid, text, 40);
    return narrow(text);
}

std::string nameOf(ITypeInfo* info, MEMBERID member) {
    BSTR name = nullptr;
    BSTR help = nullptr;
    if (FAILED(info->GetDocumentation(member, &name, &help, nullptr, nullptr)))
        return "unreadable";
    const std::string text = taken(name);
    return text + " \"" + taken(help) + "\"";
}

/// An alias by its own identifier and that of its library, so that one of another origin differs.
std::string aliasText(ITypeInfo* alias, const GUID& guid) {
    ComPtr<ITypeLib> library;
    UINT index = 0;
    TLIBATTR* attr = nullptr;
    if (FAILED(alias->GetContainingTypeLib(library.GetAddressOf(), &index)) || FAILED(library->GetLibAttr(&attr)))
        return " alias of an unreadable library";
    const std::string text = " alias " + idText(guid) + " of " + idText(attr->guid);
    library->ReleaseTLibAttr(attr);
    return text;
}

std::string typeText(ITypeInfo* info, const TYPEDESC& type) {
    if (type.vt == VT_PTR)
        return typeText(info, *type.lptdesc) + "*";
    if (type.vt != VT_USERDEFINED)
        return std::to_string(type.vt);
    ComPtr<ITypeInfo> other;
    BSTR name = nullptr;
    TYPEATTR* attr = nullptr;
    if (FAILED(info->GetRefTypeInfo(type.hreftype, other.GetAddressOf())) ||
        FAILED(other->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr)))
        return "unreadable";
    std::string text = taken(name);
    if (FAILED(other->GetTypeAttr(&attr)))
        return text + " unreadable";
    if (attr->typekind == TKIND_ALIAS)
        text += aliasText(other.Get(), attr->guid);
    other->ReleaseTypeAttr(attr);
    return text;
}

void writeFunctions(ITypeInfo* info, const TYPEATTR& attr) {
    for (UINT i = 0; i < attr.cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(info->GetFuncDesc(i, &function)))
            continue;
        std::printf("  %ld kind %d invoke %d convention %d flags %d slot %d %s: %s\n", function->memid,
                    static_cast<int>(function->funckind), static_cast<int>(function->invkind),
                    static_cast<int>(function->callconv), function->wFuncFlags,
                    function->oVft / static_cast<int>(sizeof(void*)), nameOf(info, function->memid).c_str(),
                    typeText(info, function->elemdescFunc.tdesc).c_str());
        BSTR names[20] = {};
        UINT count = 0;
        info->GetNames(function->memid, names, 20, &count);
        for (int p = 0; p < function->cParams; ++p) {
            const ELEMDESC& element = function->lprgelemdescParam[p];
            const auto place = static_cast<UINT>(p) + 1;
            std::printf("    %s %s flags %d\n", place < count ? narrow(names[place]).c_str() : "-",
                        typeText(info, element.tdesc).c_str(), element.paramdesc.wParamFlags);
        }
        for (const BSTR name : names)
            SysFreeString(name);
        info->ReleaseFuncDesc(function);
    }
}

void writeImplemented(ITypeInfo* info, const TYPEATTR& attr) {
    for (UINT i = 0; i < attr.cImplTypes; ++i) {
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> other;
        int flags = 0;
        info->GetImplTypeFlags(i, &flags);
        if (SUCCEEDED(info->GetRefTypeOfImplType(i, &reference)) &&
            SUCCEEDED(info->GetRefTypeInfo(reference, other.GetAddressOf())))
            std::printf("  implements %s flags %d\n", nameOf(other.Get(), MEMBERID_NIL).c_str(), flags);
    }
}

void writeType(ITypeInfo* info) {
    TYPEATTR* attr = nullptr;
    if (FAILED(info->GetTypeAttr(&attr)))
        return;
    std::printf("%s %s kind %d flags %d version %d.%d, %d functions, %d variables, %d slots\n",
                idText(attr->guid).c_str(), nameOf(info, MEMBERID_NIL).c_str(), static_cast<int>(attr->typekind),
                attr->wTypeFlags, attr->wMajorVerNum, attr->wMinorVerNum, attr->cFuncs, attr->cVars,
                attr->cbSizeVft / static_cast<int>(sizeof(void*)));
    writeImplemented(info, *attr);
    writeFunctions(info, *attr);
    const bool dual = attr->typekind == TKIND_DISPATCH && (attr->wTypeFlags & TYPEFLAG_FDUAL) != 0;
    info->ReleaseTypeAttr(attr);
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> vtable;
    if (!dual || FAILED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) ||
        FAILED(info->GetRefTypeInfo(reference, vtable.GetAddressOf())) || FAILED(vtable->GetTypeAttr(&attr)))
        return;
    std::printf(" the same as a function table\n");
    writeFunctions(vtable.Get(), *attr);
    vtable->ReleaseTypeAttr(attr);
}

int write(const wchar_t* path) {
    ComPtr<ITypeLib> library;
    TLIBATTR* attr = nullptr;
    BSTR name = nullptr;
    BSTR help = nullptr;
    if (FAILED(LoadTypeLibEx(path, REGKIND_NONE, library.GetAddressOf())) || FAILED(library->GetLibAttr(&attr)))
        return 1;
    library->GetDocumentation(MEMBERID_NIL, &name, &help, nullptr, nullptr);
    const std::string title = taken(name);
    std::printf("%s %s \"%s\" version %d.%d language %lu flags %d\n", idText(attr->guid).c_str(), title.c_str(),
                taken(help).c_str(), attr->wMajorVerNum, attr->wMinorVerNum, attr->lcid, attr->wLibFlags);
    library->ReleaseTLibAttr(attr);
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        if (FAILED(library->GetTypeInfo(i, info.GetAddressOf())))
            return 1;
        writeType(info.Get());
    }
    return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 2 || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
        return 2;
    const int result = write(argv[1]);
    CoUninitialize();
    return result;
}
