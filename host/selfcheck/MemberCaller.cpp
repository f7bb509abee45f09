#include "host/selfcheck/MemberCaller.h"

#include <algorithm>
#include <bit>
#include <optional>

#include "host/selfcheck/Report.h"

namespace kv::host {

namespace {

/// One or more functions of the interface with one name.
struct Member {
    DISPID id = 0;
    std::wstring name;
    int kinds = 0;                    ///< flags of INVOKEKIND
    std::vector<VARTYPE> parameters;  ///< that a caller must pass, without the value of a property
    VARTYPE value = VT_EMPTY;         ///< of a property that can be set
};

class FunctionDescription {
  public:
    FunctionDescription(ITypeInfo& info, UINT index) : info_(info) {
        check(info.GetFuncDesc(index, &description_), L"Reading the description of a member");
    }
    FunctionDescription(const FunctionDescription&) = delete;
    FunctionDescription& operator=(const FunctionDescription&) = delete;
    ~FunctionDescription() { info_.ReleaseFuncDesc(description_); }
    [[nodiscard]] const FUNCDESC* operator->() const noexcept { return description_; }

  private:
    ITypeInfo& info_;
    FUNCDESC* description_ = nullptr;
};

UINT functionsOf(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    check(info.GetTypeAttr(&attributes), L"Reading the description of an interface");
    const UINT count = attributes->cFuncs;
    info.ReleaseTypeAttr(attributes);
    return count;
}

/// What a caller passes for a parameter: VT_DISPATCH for all objects.
VARTYPE typeOf(const TYPEDESC& type) {
    if (type.vt == VT_PTR) {
        return type.lptdesc->vt == VT_USERDEFINED ? static_cast<VARTYPE>(VT_DISPATCH) : type.lptdesc->vt;
    }
    return type.vt == VT_USERDEFINED ? static_cast<VARTYPE>(VT_I4) : type.vt;
}

void addFunction(std::vector<Member>& members, ITypeInfo& info, const FunctionDescription& function) {
    auto found = std::find_if(members.begin(), members.end(), [&](const Member& m) { return m.id == function->memid; });
    if (found == members.end()) {
        Bstr name;
        check(info.GetDocumentation(function->memid, name.put(), nullptr, nullptr, nullptr),
              L"Reading a member's name");
        found = members.insert(members.end(), Member{function->memid, name.text(), 0, {}, VT_EMPTY});
    }
    const bool sets = (function->invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
    found->kinds |= function->invkind;
    found->parameters.clear();
    for (SHORT i = 0; i < function->cParams; ++i) {
        const ELEMDESC& parameter = function->lprgelemdescParam[i];
        const USHORT flags = parameter.paramdesc.wParamFlags;
        if (sets && i + 1 == function->cParams) {
            found->value = typeOf(parameter.tdesc);
        } else if ((flags & (PARAMFLAG_FRETVAL | PARAMFLAG_FOPT)) == 0) {
            found->parameters.push_back(typeOf(parameter.tdesc));
        }
    }
}

std::vector<Member> membersOf(ITypeInfo& info) {
    std::vector<Member> members;
    for (UINT i = 0; i < functionsOf(info); ++i) {
        const FunctionDescription function(info, i);
        // The methods of IDispatch itself have larger numbers.
        if (function->memid >= 1 && function->memid < 0x10000) {
            addFunction(members, info, function);
        }
    }
    return members;
}

std::wstring textOf(HRESULT hr, EXCEPINFO& exception) {
    std::wstring text = hexOf(static_cast<unsigned long>(hr));
    if (exception.bstrDescription != nullptr) {
        text += std::wstring(L" ") + exception.bstrDescription;
    }
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return text;
}

class Caller {
  public:
    Caller(IDispatch* object, const MemberHints& hints) : object_(object), hints_(hints) {}

    void call(const Member& member) {
        ++results_.members;
        results_.functions += static_cast<std::size_t>(std::popcount(static_cast<unsigned>(member.kinds)));
        if (hints_.skipped.contains(member.name)) {
            return;
        }
        if ((member.kinds & INVOKE_FUNC) != 0) {
            invoke(member, DISPATCH_METHOD, hinted(member).value_or(defaults(member)));
        }
        const std::optional<Value> before = read(member);
        if ((member.kinds & INVOKE_PROPERTYPUT) != 0) {
            set(member, DISPATCH_PROPERTYPUT, before);
        }
        if ((member.kinds & INVOKE_PROPERTYPUTREF) != 0) {
            set(member, DISPATCH_PROPERTYPUTREF, before);
        }
    }
    [[nodiscard]] const MemberResults& results() const noexcept { return results_; }

  private:
    [[nodiscard]] std::optional<std::vector<Value>> hinted(const Member& member) const {
        const auto found = hints_.arguments.find(member.name);
        return found == hints_.arguments.end() ? std::nullopt : std::optional(found->second());
    }

    [[nodiscard]] Value usual(VARTYPE type) const {
        switch (type) {
            case VT_BSTR:
                return Value::of(std::wstring(L"TX1"));
            case VT_BOOL:
                return Value::of(false);
            case VT_DISPATCH:
                return Value::of(hints_.object());
            default:
                return Value::of(LONG{0});
        }
    }

    [[nodiscard]] std::vector<Value> defaults(const Member& member) const {
        std::vector<Value> values;
        for (const VARTYPE type : member.parameters) {
            values.push_back(usual(type));
        }
        return values;
    }

    std::optional<Value> read(const Member& member) {
        if ((member.kinds & INVOKE_PROPERTYGET) == 0) {
            return std::nullopt;
        }
        return invoke(member, DISPATCH_PROPERTYGET, defaults(member));
    }

    void set(const Member& member, WORD kind, const std::optional<Value>& before) {
        std::vector<Value> values = defaults(member);
        const std::optional<std::vector<Value>> hint = hinted(member);
        const Value wanted = hint ? hint->front() : before.value_or(usual(member.value));
        values.push_back(wanted);
        invoke(member, kind, values);
        // A property that is an object is compared by its host only.
        if (before && member.value != VT_DISPATCH && !hints_.refusing.contains(member.name)) {
            const std::optional<Value> after = read(member);
            Value expected = wanted;
            if (after && (FAILED(VariantChangeType(&expected, &expected, 0, after->vt)) ||
                          VarCmp(&expected, const_cast<Value*>(&*after), LOCALE_INVARIANT, 0) != VARCMP_EQ)) {
                results_.problems.push_back(member.name + L" has another value than it was set to");
            }
        }
    }

    std::optional<Value> invoke(const Member& member, WORD kind, std::vector<Value> values) {
        std::reverse(values.begin(), values.end());
        const bool sets = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
        DISPID put = DISPID_PROPERTYPUT;
        DISPPARAMS arguments{values.data(), sets ? &put : nullptr, static_cast<UINT>(values.size()), sets ? 1U : 0U};
        Value result;
        EXCEPINFO exception{};
        UINT badArgument = 0;
        ++results_.calls;
        const HRESULT hr = object_->Invoke(member.id, IID_NULL, LOCALE_USER_DEFAULT, kind, &arguments,
                                           sets ? nullptr : &result, &exception, &badArgument);
        const std::wstring text = textOf(hr, exception);
        const bool mustFail = sets && hints_.refusing.contains(member.name);
        if (SUCCEEDED(hr) == mustFail) {
            results_.problems.push_back(member.name + L": " + text);
        }
        return SUCCEEDED(hr) ? std::optional(result) : std::nullopt;
    }

    IDispatch* object_;
    const MemberHints& hints_;
    MemberResults results_;
};

}  // namespace

MemberResults callMembers(IDispatch* object, const MemberHints& hints) {
    ComPtr<ITypeInfo> info;
    check(object->GetTypeInfo(0, LOCALE_NEUTRAL, info.GetAddressOf()), L"Getting the type information");
    Caller caller(object, hints);
    for (const Member& member : membersOf(*info.Get())) {
        caller.call(member);
    }
    return caller.results();
}

}  // namespace kv::host
