#include "host/form_object.h"

#include "com/enumerator.h"
#include "com/guard.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "host/form_parts_object.h"

namespace qvx::host {

namespace {

// Identifiers of controls and menus by name, above the form's own members.
constexpr DISPID firstNamed = 0x10000;

struct CopyUnknown {
    static void Out(const ComPtr<IUnknown>& object, IUnknown** to) { *to = object.copy(); }
};

}  // namespace

FormObject::FormObject(HostForm& form) : form_(&form), controls_(MakeControls(form)) {
    AddProperty(u"Name", [this](const Call& call) {
        if (call.put) RequireDesigner().Rename(nullptr, call.StringValue());
        return Variant(Form().Name());
    });
    AddReadOnly(u"Controls",
                [this](const Call& call) { return call.Has(0) ? ControlOf(Form(), call) : Variant(controls_.get()); });
    AddReadOnly(u"ActiveControl", [this](const Call&) {
        Form().Keyboard().FollowFocus();
        const FormControl* active = Form().Keyboard().Active();
        return Variant(active ? active->Extended() : nullptr);
    });
    AddProperty(u"Tag", [this](const Call& call) {
        if (call.put) {
            Form().SetTag(call.StringValue());
        }
        return Variant(Form().Look().tag);
    });
    AddWindowMembers();
    AddLookMembers();
    AddFrameMembers();
}

void FormObject::AddWindowMembers() {
    AddReadOnly(u"hWnd", [this](const Call&) {
        return Variant(static_cast<long>(reinterpret_cast<LONG_PTR>(Form().Handle())));
    });
    const auto addSize = [this](const char16_t* name, bool horizontal, bool inside) {
        AddProperty(name, [this, horizontal, inside](const Call& call) {
            HostForm& form = Form();
            RECT whole{};
            GetWindowRect(form.Handle(), &whole);
            const Rect client = form.ClientArea();
            const Dpi dpi = form.FormDpi();
            // The frame and the menu bar around the client area, in twips.
            const int frame = inside       ? 0
                              : horizontal ? PixelsToTwips(whole.right - whole.left - client.Width(), dpi.x)
                                           : PixelsToTwips(whole.bottom - whole.top - client.Height(), dpi.y);
            if (call.put) {
                const int size = static_cast<int>(call.LongValue()) - frame;
                form.SetClientSize(horizontal ? size : form.Look().clientWidth,
                                   horizontal ? form.Look().clientHeight : size);
            }
            return Variant((horizontal ? form.Look().clientWidth : form.Look().clientHeight) + frame);
        });
    };
    addSize(u"Width", true, false);
    addSize(u"Height", false, false);
    addSize(u"ScaleWidth", true, true);
    addSize(u"ScaleHeight", false, true);
    AddProperty(u"Visible", [this](const Call& call) {
        if (call.put) ShowWindow(AtWork().Handle(), call.BoolValue() ? SW_SHOW : SW_HIDE);
        return Variant(Form().Designer() || IsWindowVisible(Form().Handle()) != FALSE);
    });
    AddProperty(u"Enabled", [this](const Call& call) {
        if (call.put) EnableWindow(AtWork().Handle(), call.BoolValue());
        return Variant(IsWindowEnabled(Form().Handle()) != FALSE);
    });
    AddMethod(u"Show", [this](const Call&) {
        ShowWindow(AtWork().Handle(), SW_SHOW);
        return Variant();
    });
    AddMethod(u"Hide", [this](const Call&) {
        ShowWindow(AtWork().Handle(), SW_HIDE);
        return Variant();
    });
    AddMethod(u"Refresh", [this](const Call&) {
        RedrawWindow(Form().Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        return Variant();
    });
    const auto close = [this](const Call&) {
        AtWork().AskToClose(0);
        return Variant();
    };
    AddMethod(u"Close", close);
    AddMethod(u"Unload", close);
}

void FormObject::AddLookMembers() {
    AddProperty(u"Caption", [this](const Call& call) {
        if (call.put) Form().SetCaption(call.StringValue());
        return Variant(Form().Look().caption);
    });
    AddProperty(u"BackColor", [this](const Call& call) {
        if (call.put) Form().SetBackColor(static_cast<OLE_COLOR>(call.LongValue()));
        return Variant(static_cast<long>(Form().BackColor()));
    });
    AddProperty(u"ForeColor", [this](const Call& call) {
        if (call.put) Form().SetForeColor(static_cast<OLE_COLOR>(call.LongValue()));
        return Variant(static_cast<long>(Form().ForeColor()));
    });
    AddProperty(u"Font", [this](const Call& call) {
        if (call.put) {
            const auto font = call.Value().ToObject<IFontDisp>();
            if (!font) ThrowTypeMismatch();
            Form().Font().Set(font.get(), false);
        }
        const auto font = ComPtr<IFontDisp>::Adopt(Form().Font().Get());
        return Variant(static_cast<IDispatch*>(font.get()));
    });
}

void FormObject::AddFrameMembers() {
    AddProperty(u"BorderStyle", [this](const Call& call) {
        if (call.put) {
            RequireDesigner();
            Form().SetFrame(static_cast<int>(call.LongValue()), Form().Look().minButton, Form().Look().maxButton);
        }
        return Variant(Form().Look().borderStyle);
    });
    AddProperty(u"MinButton", [this](const Call& call) {
        if (call.put) {
            RequireDesigner();
            Form().SetFrame(Form().Look().borderStyle, call.BoolValue(), Form().Look().maxButton);
        }
        return Variant(Form().Look().minButton);
    });
    AddProperty(u"MaxButton", [this](const Call& call) {
        if (call.put) {
            RequireDesigner();
            Form().SetFrame(Form().Look().borderStyle, Form().Look().minButton, call.BoolValue());
        }
        return Variant(Form().Look().maxButton);
    });
}

DesignHost& FormObject::RequireDesigner() const {
    DesignHost* designer = Form().Designer();
    if (!designer) throw RunTimeError(errors::setNotSupportedAtRunTime, u"Set not supported at runtime");
    return *designer;
}

HostForm& FormObject::AtWork() const {
    if (Form().Designer()) throw RunTimeError(errors::setNotPermitted, u"Set not permitted");
    return Form();
}

HostForm& FormObject::Form() const {
    if (!form_) ThrowObjectNotSet();
    return *form_;
}

STDMETHODIMP FormObject::QueryInterface(REFIID iid, void** object) {
    if (object && (iid == IID_IOleContainer || iid == IID_IParseDisplayName)) {
        *object = static_cast<IOleContainer*>(this);
        AddRef();
        return S_OK;
    }
    return NamedObject::QueryInterface(iid, object);
}

STDMETHODIMP FormObject::ParseDisplayName(IBindCtx*, LPOLESTR, ULONG*, IMoniker** moniker) {
    if (moniker) *moniker = nullptr;
    // The answer of containers that offer no links, since no part of a form can be linked to.
    return E_NOTIMPL;
}

STDMETHODIMP FormObject::EnumObjects(DWORD, IEnumUnknown** objects) {
    return Guard([&]() -> HRESULT {
        if (!objects) return E_POINTER;
        std::vector<ComPtr<IUnknown>> all;
        for (const auto& control : Form().Controls()) {
            if (auto inner = control->Inner().As<IOleObject>()) all.emplace_back(inner);
        }
        *objects =
            MakeObject<Enumerator<IEnumUnknown, IUnknown*, ComPtr<IUnknown>, CopyUnknown>>(std::move(all)).detach();
        return S_OK;
    });
}

STDMETHODIMP FormObject::LockContainer(WINBOOL) { return S_OK; }

HRESULT FormObject::FindOther(LPOLESTR name, DISPID* id) {
    const Text wanted(FromWide(name));
    if (!Form().FindControl(wanted) && !Form().Menus().Find(wanted)) return DISP_E_UNKNOWNNAME;
    for (std::size_t i = 0; i < names_.size(); ++i) {
        if (SameName(names_[i], wanted)) {
            *id = firstNamed + static_cast<DISPID>(i);
            return S_OK;
        }
    }
    names_.push_back(wanted);
    *id = firstNamed + static_cast<DISPID>(names_.size() - 1);
    return S_OK;
}

HRESULT FormObject::InvokeOther(DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                EXCEPINFO* exception, UINT* argumentInError) {
    const auto index = static_cast<std::size_t>(member - firstNamed);
    if (member < firstNamed || index >= names_.size() || (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF))) {
        return DISP_E_MEMBERNOTFOUND;
    }
    const Text& name = names_[index];
    ComPtr<IDispatch> object;
    for (const NamedPart& part : PartsOf(Form())) {
        if (!SameName(part.name, name)) continue;
        object = part.index >= 0 ? MakeControlArray(Form(), name) : part.object;
        break;
    }
    if (!object) return DISP_E_MEMBERNOTFOUND;
    // In frm.txtField(2), the argument selects the element.
    if (parameters->cArgs > 0) {
        return object->Invoke(DISPID_VALUE, IID_NULL, locale, flags, parameters, result, exception, argumentInError);
    }
    if (result) *result = Variant(object.get()).detach();
    return S_OK;
}

}  // namespace qvx::host
