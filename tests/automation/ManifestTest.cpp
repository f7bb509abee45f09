// The manifest for use without registration declares the same as registration writes.
#include <map>
#include <utility>
#include <vector>

#include "tests/automation/OwnRegistry.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {
namespace {

using Attributes = std::map<std::string, std::string>;

std::wstring wide(const std::string& text) {
    return {text.begin(), text.end()};
}

/// The elements of a name in a text, each with its attributes. As much XML as the manifest needs.
std::vector<Attributes> elements(const std::string& xml, const std::string& name) {
    std::vector<Attributes> result;
    for (std::size_t at = xml.find("<" + name + " "); at != std::string::npos;
         at = xml.find("<" + name + " ", at + 1)) {
        const std::string tag = xml.substr(at, xml.find('>', at) - at);
        Attributes attributes;
        for (std::size_t equals = tag.find("=\""); equals != std::string::npos; equals = tag.find("=\"", equals + 1)) {
            const std::size_t start = tag.find_last_of(" \n\r", equals) + 1;
            const std::size_t end = tag.find('"', equals + 2);
            attributes[tag.substr(start, equals - start)] = tag.substr(equals + 2, end - equals - 2);
        }
        result.push_back(attributes);
    }
    return result;
}

/// The text between <progid> and </progid> of a class.
std::string generalName(const std::string& xml, const std::string& clsid) {
    const std::size_t start = xml.find("<progid>", xml.find("clsid=\"" + clsid)) + 8;
    return xml.substr(start, xml.find('<', start) - start);
}

int statusOf(const std::string& names) {
    const std::pair<const char*, int> known[] = {{"recomposeonresize", OLEMISC_RECOMPOSEONRESIZE},
                                                 {"cantlinkinside", OLEMISC_CANTLINKINSIDE},
                                                 {"insideout", OLEMISC_INSIDEOUT},
                                                 {"activatewhenvisible", OLEMISC_ACTIVATEWHENVISIBLE},
                                                 {"setclientsitefirst", OLEMISC_SETCLIENTSITEFIRST}};
    int status = 0;
    std::string rest = names + ",";
    while (!rest.empty()) {
        const std::string name = rest.substr(0, rest.find(','));
        rest.erase(0, name.size() + 1);
        bool found = false;
        for (const auto& [text, bit] : known) {
            if (name == text) {
                status |= bit;
                found = true;
            }
        }
        EXPECT_TRUE(found) << name;
    }
    return status;
}

std::size_t keysDirectlyBelow(const Snapshot& all, const std::wstring& parent) {
    std::size_t count = 0;
    for (const auto& [key, value] : all) {
        const bool isBelow = key.size() > parent.size() && _wcsnicmp(key.c_str(), parent.c_str(), parent.size()) == 0;
        if (isBelow && key.find_first_of(L"\\@", parent.size()) == std::wstring::npos)
            ++count;
    }
    return count;
}

class ManifestTest : public OwnRegistry {
  protected:
    std::string xml;
    Snapshot registered;

    void SetUp() override {
        OwnRegistry::SetUp();
        const std::wstring path = modulePath();
        xml = contentOf(path.substr(0, path.find_last_of(L'\\') + 1) + L"kvBandscope.manifest");
        ASSERT_FALSE(xml.empty());
        ASSERT_EQ(registerServer(), S_OK);
        registered = classesOf(machine);
    }
    /// Fails when the key was not registered.
    std::wstring at(const std::wstring& key) {
        const auto found = registered.find(key);
        EXPECT_NE(found, registered.end()) << testing::PrintToString(key);
        return found == registered.end() ? L"" : found->second;
    }
};

TEST_F(ManifestTest, NamesTheClassesAsRegistrationDoes) {
    const std::vector<Attributes> classes = elements(xml, "comClass");
    EXPECT_EQ(classes.size(), keysDirectlyBelow(registered, L"CLSID\\"));
    ASSERT_EQ(classes.size(), 3U);
    for (Attributes attributes : classes) {
        const std::wstring key = L"CLSID\\" + wide(attributes["clsid"]);
        EXPECT_EQ(wide(attributes["description"]), at(key));
        EXPECT_EQ(wide(attributes["progid"]), at(key + L"\\ProgID"));
        EXPECT_EQ(wide(generalName(xml, attributes["clsid"])), at(key + L"\\VersionIndependentProgID"));
        EXPECT_EQ(wide(attributes["tlbid"]), at(key + L"\\TypeLib"));
        EXPECT_EQ(wide(attributes["threadingModel"]), at(key + L"\\InprocServer32@ThreadingModel"));
        if (attributes.count("miscStatusContent") != 0) {
            EXPECT_EQ(std::to_wstring(statusOf(attributes["miscStatusContent"])), at(key + L"\\MiscStatus\\1"));
        } else {
            EXPECT_EQ(registered.count(key + L"\\MiscStatus"), 0U);
        }
    }
}

TEST_F(ManifestTest, NamesTheLibraryAsRegistrationDoes) {
    std::vector<Attributes> libraries = elements(xml, "typelib");
    ASSERT_EQ(libraries.size(), 1U);
    EXPECT_EQ(wide(libraries[0]["tlbid"]), kLibraryId);
    EXPECT_EQ(registered.count(L"TypeLib\\" + wide(libraries[0]["tlbid"]) + L"\\" + wide(libraries[0]["version"])), 1U);
    EXPECT_EQ(libraries[0].count("helpdir"), 1U);  // the system demands it, empty as it is
}

TEST_F(ManifestTest, NamesTheInterfacesAsRegistrationDoes) {
    const std::vector<Attributes> interfaces = elements(xml, "comInterfaceExternalProxyStub");
    EXPECT_EQ(interfaces.size(), keysDirectlyBelow(registered, L"Interface\\"));
    ASSERT_EQ(interfaces.size(), 4U);
    for (Attributes attributes : interfaces) {
        const std::wstring key = L"Interface\\" + wide(attributes["iid"]);
        EXPECT_EQ(wide(attributes["name"]), at(key));
        EXPECT_EQ(wide(attributes["tlbid"]), at(key + L"\\TypeLib"));
        EXPECT_EQ(wide(attributes["proxyStubClsid32"]), at(key + L"\\ProxyStubClsid32"));
    }
}

TEST_F(ManifestTest, NamesTheFileAndItsArchitecture) {
    std::vector<Attributes> files = elements(xml, "file");
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0]["name"], "kvBandscope.ocx");
    std::vector<Attributes> identities = elements(xml, "assemblyIdentity");
    ASSERT_EQ(identities.size(), 1U);
    EXPECT_EQ(identities[0]["name"], "kvBandscope");
    EXPECT_EQ(identities[0]["version"], "1.0.0.0");
    EXPECT_EQ(identities[0]["processorArchitecture"], sizeof(void*) == 8 ? "amd64" : "x86");
}

TEST_F(ManifestTest, RegistrationMatchesTheTypeLibrary) {
    ComPtr<ITypeLib> library;
    ASSERT_EQ(LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, library.GetAddressOf()), S_OK);
    TLIBATTR* attr = nullptr;
    Text title;
    ASSERT_EQ(library->GetLibAttr(&attr), S_OK);
    const std::wstring version = std::to_wstring(attr->wMajorVerNum) + L"." + std::to_wstring(attr->wMinorVerNum);
    EXPECT_EQ(library->GetDocumentation(MEMBERID_NIL, nullptr, title.put(), nullptr, nullptr), S_OK);
    EXPECT_EQ(at(L"TypeLib\\" + kLibraryId + L"\\" + version), title.str());
    EXPECT_EQ(at(L"TypeLib\\" + kLibraryId + L"\\" + version + L"\\FLAGS"), std::to_wstring(attr->wLibFlags & ~8U));
    library->ReleaseTLibAttr(attr);
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* type = nullptr;
        Text name;
        wchar_t id[40] = L"";
        ASSERT_EQ(library->GetTypeInfo(i, info.GetAddressOf()), S_OK);
        ASSERT_EQ(info->GetTypeAttr(&type), S_OK);
        EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), S_OK);
        StringFromGUID2(type->guid, id, 40);
        if (type->typekind == TKIND_DISPATCH) {
            EXPECT_EQ(at(L"Interface\\" + std::wstring(id)), name.str());
        }
        info->ReleaseTypeAttr(type);
    }
}

}  // namespace
}  // namespace kv::test
