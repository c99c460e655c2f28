#include "host/form_object.h"

#include <set>

#include "com/enumerator.h"
#include "com/guard.h"
#include "com/module.h"
#include "com/safearray.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "host/form_storage_win32.h"

namespace qvx::host {

namespace {

// Identifiers of controls and menus by name, above the form's own members.
constexpr DISPID firstNamed = 0x10000;

struct CopyUnknown {
    static void Out(const ComPtr<IUnknown>& object, IUnknown** to) { *to = object.copy(); }
};

// An object that belongs to a form, and may outlive it in a script's variable: it reaches the form through the form's
// own object, which knows.
class FormPart : public NamedObject {
  protected:
    explicit FormPart(HostForm& form) : form_(&form), watch_(form.Watch()) {}
    ~FormPart() override = default;
    HostForm& Form() const {
        if (!watch_.Alive()) ThrowObjectNotSet();
        return *form_;
    }

  private:
    HostForm* form_;
    LifeWatch watch_;
};

// Everything on the form that scripts can reach: its controls, then its menus.
struct NamedPart {
    Text name;
    int index;  // -1 for what is no element of an array
    ComPtr<IDispatch> object;
};

std::vector<NamedPart> PartsOf(HostForm& form) {
    std::vector<NamedPart> parts;
    for (const auto& control : form.Controls()) {
        parts.push_back({control->Name(), control->Index(), ComPtr<IDispatch>(control->Extended())});
    }
    for (const MenuItem* menu : form.Menus().All()) {
        parts.push_back({menu->name, menu->index, ComPtr<IDispatch>(form.Menus().Automation(*menu))});
    }
    return parts;
}

// The controls and menus by number (from 0) and by name.
class ControlsObject final : public FormPart {
  public:
    explicit ControlsObject(HostForm& form) : FormPart(form) {
        AddReadOnly(u"Count", [this](const Call&) { return Variant(static_cast<long>(PartsOf(Form()).size())); });
        AddReadOnly(u"Item", [this](const Call& call) { return Item(Form(), call); });
        SetDefaultMember(u"Item");
        AddEnumerator([this] {
            std::vector<ComPtr<IDispatch>> all;
            for (const NamedPart& part : PartsOf(Form())) all.push_back(part.object);
            return all;
        });
    }

    // What the first argument names or counts.
    static Variant Item(HostForm& form, const Call& call) {
        const std::vector<NamedPart> parts = PartsOf(form);
        if (call.At(0).Type() == VT_BSTR) {
            const Text name = call.String(0);
            for (const NamedPart& part : parts) {
                if (SameName(part.name, name)) return Variant(part.object.get());
            }
            constexpr int elementNotFound = 730;
            throw RunTimeError(elementNotFound, u"Control '" + name + u"' not found");
        }
        const long number = call.Long(0);
        if (number < 0 || static_cast<std::size_t>(number) >= parts.size()) {
            throw RunTimeError(errors::subscriptOutOfRange, u"Subscript out of range");
        }
        return Variant(parts[static_cast<std::size_t>(number)].object.get());
    }

  private:
    ~ControlsObject() override = default;
};

class ControlArrayObject final : public FormPart {
  public:
    ControlArrayObject(HostForm& form, Text name) : FormPart(form), name_(std::move(name)) {
        AddReadOnly(u"Count", [this](const Call&) { return Variant(static_cast<long>(Elements().size())); });
        AddReadOnly(u"LBound", [this](const Call&) { return Variant(Bounds().first); });
        AddReadOnly(u"UBound", [this](const Call&) { return Variant(Bounds().second); });
        AddReadOnly(u"Item", [this](const Call& call) { return Variant(Element(Form(), name_, call.Long(0)).get()); });
        SetDefaultMember(u"Item");
        AddEnumerator([this] {
            std::vector<ComPtr<IDispatch>> all;
            for (const NamedPart& element : Elements()) all.push_back(element.object);
            return all;
        });
    }

    static ComPtr<IDispatch> Element(HostForm& form, const Text& name, long index) {
        constexpr int elementMissing = 340;
        for (const NamedPart& part : PartsOf(form)) {
            if (index >= 0 && part.index == index && SameName(part.name, name)) return part.object;
        }
        throw RunTimeError(elementMissing, u"Control array element does not exist");
    }

  private:
    ~ControlArrayObject() override = default;

    std::vector<NamedPart> Elements() const {
        std::vector<NamedPart> elements = PartsOf(Form());
        std::erase_if(elements, [&](const NamedPart& part) { return part.index < 0 || !SameName(part.name, name_); });
        return elements;
    }
    std::pair<int, int> Bounds() const {
        std::pair<int, int> bounds{0, -1};
        bool first = true;
        for (const NamedPart& element : Elements()) {
            bounds.first = first ? element.index : std::min(bounds.first, element.index);
            bounds.second = first ? element.index : std::max(bounds.second, element.index);
            first = false;
        }
        return bounds;
    }

    Text name_;
};

class ControlArraysObject final : public FormPart {
  public:
    explicit ControlArraysObject(HostForm& form) : FormPart(form) {
        for (const NamedPart& part : PartsOf(form)) {
            if (part.index >= 0) names_.insert(FoldedText(part.name));
        }
        for (const Text& name : names_) {
            AddReadOnly(name.c_str(), [this, name](const Call& call) {
                if (!call.Has(0)) return Variant(MakeControlArray(Form(), name).get());
                return Variant(ControlArrayObject::Element(Form(), name, call.Long(0)).get());
            });
        }
    }

  private:
    ~ControlArraysObject() override = default;

    std::set<Text> names_;  // whatever their letters' case
};

class HostObject final : public FormPart {
  public:
    HostObject(HostForm& form, const Options& options) : FormPart(form) {
        AddMethod(u"Log", [file = options.log](const Call& call) {
            AppendLine(file, call.String(0));
            return Variant();
        });
        AddMethod(u"SaveForm", [this, &options](const Call& call) {
            Form().Save(call.Has(0) ? call.String(0) : options.save.empty() ? options.form : options.save);
            return Variant();
        });
        AddMethod(u"Quit", [this](const Call& call) {
            Form().AskToClose(call.Has(0) ? static_cast<int>(call.Long(0)) : 0);
            return Variant();
        });
        AddReadOnly(u"Arguments", [arguments = options.arguments](const Call& call) {
            if (call.Has(0)) {
                const long index = call.Long(0);
                if (index < 0 || static_cast<std::size_t>(index) >= arguments.size()) {
                    throw RunTimeError(errors::subscriptOutOfRange, u"Subscript out of range");
                }
                return Variant(arguments[static_cast<std::size_t>(index)]);
            }
            return ArrayOf(arguments);
        });
        AddReadOnly(u"DesignMode", [this](const Call&) { return Variant(Form().DesignMode()); });
    }

  private:
    ~HostObject() override = default;

    static Variant ArrayOf(const std::vector<Text>& texts) {
        SafeArray array = SafeArray::OfVariants({texts.begin(), texts.end()});
        Variant result;
        result.ptr()->vt = VT_ARRAY | VT_VARIANT;
        result.ptr()->parray = array.detach();
        return result;
    }
};

class AppObject final : public NamedObject {
  public:
    AppObject() {
        const Text path = ModulePath(nullptr);
        const std::size_t slash = path.find_last_of(u"\\/");
        AddReadOnly(u"Title", [](const Call&) { return Variant(ProgramTitle()); });
        AddReadOnly(u"Path", [folder = path.substr(0, slash)](const Call&) { return Variant(folder); });
        AddReadOnly(u"EXEName",
                    [file = path.substr(slash + 1)](const Call&) { return Variant(file.substr(0, file.rfind(u'.'))); });
    }

  private:
    ~AppObject() override = default;
};

}  // namespace

FormObject::FormObject(HostForm& form) : form_(&form), controls_(MakeObject<ControlsObject>(form)) {
    AddProperty(u"Name", [this](const Call& call) {
        if (call.put) RequireDesigner().Rename(nullptr, call.StringValue());
        return Variant(Form().Name());
    });
    AddReadOnly(u"Controls", [this](const Call& call) {
        return call.Has(0) ? ControlsObject::Item(Form(), call) : Variant(controls_.get());
    });
    AddReadOnly(u"ActiveControl", [this](const Call&) {
        Form().FollowFocus();
        const FormControl* active = Form().Active();
        return Variant(active ? active->Extended() : nullptr);
    });
    AddProperty(u"Tag", [this](const Call& call) {
        if (call.put) {
            Form().SetTag(call.StringValue());
            Form().NoteChange(nullptr);
        }
        return Variant(Form().Tag());
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
                form.SetClientSize(horizontal ? size : form.ClientWidth(), horizontal ? form.ClientHeight() : size);
            }
            return Variant((horizontal ? form.ClientWidth() : form.ClientHeight()) + frame);
        });
    };
    addSize(u"Width", true, false);
    addSize(u"Height", false, false);
    addSize(u"ScaleWidth", true, true);
    addSize(u"ScaleHeight", false, true);
    AddProperty(u"Visible", [this](const Call& call) {
        if (call.put) ShowWindow(RunningForm().Handle(), call.BoolValue() ? SW_SHOW : SW_HIDE);
        return Variant(Form().Designer() || IsWindowVisible(Form().Handle()) != FALSE);
    });
    AddProperty(u"Enabled", [this](const Call& call) {
        if (call.put) EnableWindow(RunningForm().Handle(), call.BoolValue());
        return Variant(IsWindowEnabled(Form().Handle()) != FALSE);
    });
    AddMethod(u"Show", [this](const Call&) {
        ShowWindow(RunningForm().Handle(), SW_SHOW);
        return Variant();
    });
    AddMethod(u"Hide", [this](const Call&) {
        ShowWindow(RunningForm().Handle(), SW_HIDE);
        return Variant();
    });
    AddMethod(u"Refresh", [this](const Call&) {
        RedrawWindow(Form().Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        return Variant();
    });
    const auto close = [this](const Call&) {
        RunningForm().AskToClose();
        return Variant();
    };
    AddMethod(u"Close", close);
    AddMethod(u"Unload", close);
}

void FormObject::AddLookMembers() {
    AddProperty(u"Caption", [this](const Call& call) {
        if (call.put) Form().SetCaption(call.StringValue());
        return Variant(Form().Caption());
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
            Form().SetFrame(static_cast<int>(call.LongValue()), Form().MinButton(), Form().MaxButton());
        }
        return Variant(Form().BorderStyle());
    });
    AddProperty(u"MinButton", [this](const Call& call) {
        if (call.put) {
            RequireDesigner();
            Form().SetFrame(Form().BorderStyle(), call.BoolValue(), Form().MaxButton());
        }
        return Variant(Form().MinButton());
    });
    AddProperty(u"MaxButton", [this](const Call& call) {
        if (call.put) {
            RequireDesigner();
            Form().SetFrame(Form().BorderStyle(), Form().MinButton(), call.BoolValue());
        }
        return Variant(Form().MaxButton());
    });
}

DesignHost& FormObject::RequireDesigner() const {
    DesignHost* designer = Form().Designer();
    if (!designer) throw RunTimeError(errors::setNotSupportedAtRunTime, u"Set not supported at runtime");
    return *designer;
}

HostForm& FormObject::RunningForm() const {
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
    // The answer of containers that offer no links: nothing on a form is named for that.
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
    // frm.txtField(2): the argument is the element's.
    if (parameters->cArgs > 0) {
        return object->Invoke(DISPID_VALUE, IID_NULL, locale, flags, parameters, result, exception, argumentInError);
    }
    if (result) *result = Variant(object.get()).detach();
    return S_OK;
}

ComPtr<IDispatch> MakeControlArray(HostForm& form, const Text& name) {
    return MakeObject<ControlArrayObject>(form, name);
}

ComPtr<IDispatch> MakeControlArrays(HostForm& form) { return MakeObject<ControlArraysObject>(form); }

ComPtr<IDispatch> MakeHostObject(HostForm& form, const Options& options) {
    return MakeObject<HostObject>(form, options);
}

ComPtr<IDispatch> MakeAppObject() { return MakeObject<AppObject>(); }

}  // namespace qvx::host
