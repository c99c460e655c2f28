// One control on a form, whatever it is made of, and the extended control that scripts and the control itself see of
// it: the members the form adds (Name, Left, TabIndex ...) in front of the control's own.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <vector>

#include "com/pointer.h"
#include "host/form_file.h"
#include "host/named_object.h"
#include "host/saved_properties.h"
#include "host/twips_rect.h"

namespace qvx::host {

class DesignHost;
class HostForm;
class ExtendedControl;

// A control is known to the blocks of its form by container, name and index alone. It keeps no pointer to its block,
// since under design every undo replaces all blocks.
class FormControl {
  public:
    // `container` is the control that this one is in (a frame), or null for the form itself. Both outlive the control.
    FormControl(HostForm& form, const Block& block, FormControl* container);
    FormControl(const FormControl&) = delete;
    FormControl& operator=(const FormControl&) = delete;
    virtual ~FormControl();

    HostForm& Form() const { return form_; }
    FormControl* Container() const { return container_; }
    const Text& Name() const { return name_; }
    const Text& ClassName() const { return className_; }
    // In the file that the control was loaded from.
    int LineNumber() const { return lineNumber_; }
    // The block that describes the control, of the objects in its container; null when there is none any more.
    Block* BlockAmong(const std::vector<Block*>& objects) const;
    // The Index of an element of a control array, or -1.
    int Index() const { return index_; }
    // Name and index as the user sees them: "txtField" or "txtField(2)".
    Text Title() const;
    IDispatch* Extended() const;

    // Relative to the container, in twips.
    const TwipsRect& Bounds() const { return bounds_; }
    void Move(const TwipsRect& bounds);
    RECT PixelBounds() const;
    bool Visible() const { return visible_; }
    void SetVisible(bool visible);
    int TabIndex() const { return tabIndex_; }
    void SetTabIndex(int index) { tabIndex_ = index; }
    bool HasTabStop() const { return tabStop_; }
    void SetTabStop(bool tabStop) { tabStop_ = tabStop; }
    const Text& Tag() const { return tag_; }
    void SetTag(Text tag) { tag_ = std::move(tag); }
    const Text& ToolTip() const { return toolTip_; }
    void SetToolTip(Text text);
    // The buttons that Enter and Escape press when the active control does not use these keys.
    bool IsDefault() const { return default_; }
    bool IsCancel() const { return cancel_; }
    void SetDefault(bool isDefault) { default_ = isDefault; }
    void SetCancel(bool isCancel) { cancel_ = isCancel; }

    // What a form file keeps of the control, as it is now. Throws RunTimeError when the control cannot say.
    SavedProperties Saved();
    // `saved` is what the block says: when the form has been loaded, and whenever it has been saved.
    void RememberAsLoaded(SavedProperties saved) { loaded_ = std::move(saved); }
    // Brings what differs from what was loaded (or everything) into the block.
    void SaveToBlock(Block& block, const SavedProperties& saved, MergeMode mode) const;

    // --- Under design.
    // All of a block but the position and the tab index.
    static Text LookOf(const Block& block);
    // Whether the control is the one that a block describes, so that FollowBlock is all it needs.
    bool Shows(const Block& block) const;
    // The block is what the control shows, from now on.
    void RememberBlock(const Block& block);
    // Takes position and tab index from a block for which Shows is true. False when the control keeps another place
    // than the block says.
    bool FollowBlock(const Block& block);
    // Whether the form file gives its size. If not, the control chooses it.
    bool SaysSize() const { return saysSize_; }
    // Notifies the designer, if there is one.
    void NoteChange();

    // The window of the control, or null for one that has none. Children of a container are children of this window.
    virtual HWND Window() const = 0;
    virtual void Focus(const MSG* message) = 0;
    // Whether the keyboard finds it: it and its containers are visible and enabled.
    bool Reachable() const;
    // Whether it can take the focus, now.
    bool CanFocus() const { return Reachable() && AcceptsFocus(); }
    virtual bool Enabled() const = 0;
    virtual void SetEnabled(bool enabled) = 0;
    // The members that are the control's own; may be null.
    virtual ComPtr<IDispatch> Inner() const = 0;
    // The control's own handling of a key message while it has the focus; true when it took the key.
    virtual bool TranslateKey(MSG& message);
    // The keys that Alt reaches it by, in lower case.
    virtual std::vector<char16_t> AccessKeys() const { return {}; }
    // Its access key, or Enter or Escape for a default or cancel button, was pressed.
    virtual void OnAccessKey(MSG& message);
    // Whether Enter belongs to the control rather than to the form's default button.
    virtual bool TakesReturn() const { return false; }
    // Whether Enter does nothing in the control but sound the beep.
    virtual bool IgnoresReturn() const { return false; }
    // Whether Enter presses it while it has the focus.
    virtual bool IsButton() const { return false; }
    // Focus leaves the control for another one of the form.
    virtual void OnLeft() {}
    // The form has another resolution.
    virtual void FollowResolution();
    // The form's font or colours have changed.
    virtual void OnAmbientChanged(DISPID) {}
    // A command of the control's window (BN_CLICKED, EN_CHANGE ...).
    virtual void OnCommand(UINT) {}
    // The brush and colours of a system window; null for the form's own.
    virtual HBRUSH OnColor(HDC) { return nullptr; }

  protected:
    // Whether its window takes the focus, as far as the control alone decides it.
    virtual bool AcceptsFocus() const = 0;
    virtual void ApplyBounds(const RECT& pixels) = 0;
    virtual void ApplyVisible(bool visible) = 0;
    // Adds the control's own properties to what the form keeps for it.
    virtual void SaveOwn(SavedProperties& saved) = 0;
    // The names that the control knows in its block.
    virtual std::vector<Text> KnownProperties() const = 0;

    // Whether it is shown on the screen: under design everything is.
    bool ShownAs(bool visible) const;

  private:
    friend class ExtendedControl;

    HostForm& form_;
    Text name_;
    Text className_;
    int lineNumber_;
    bool saysSize_;
    FormControl* container_;
    ComPtr<ExtendedControl> extended_;
    int index_;
    TwipsRect bounds_;
    bool visible_;
    int tabIndex_;
    bool tabStop_;
    Text tag_;
    Text toolTip_;
    bool default_;
    bool cancel_;
    SavedProperties loaded_;
    // The block when control and block were last the same.
    Text look_;
};

class ExtendedControl final : public NamedObject {
  public:
    explicit ExtendedControl(FormControl& control);
    // The control is gone; scripts that still hold this object get error 91.
    void Forget() { control_ = nullptr; }

    STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentInError) override;

  protected:
    HRESULT FindOther(LPOLESTR name, DISPID* id) override;
    HRESULT InvokeOther(DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentInError) override;

  private:
    ~ExtendedControl() override = default;
    FormControl& Control() const;
    // Throws RunTimeError 382 when the form is not under design.
    DesignHost& RequireDesigner() const;
    void AddPosition(const char16_t* name, int TwipsRect::*field);
    // The control; error 438 where it is no button.
    FormControl& ButtonControl() const;

    FormControl* control_;
};

}  // namespace qvx::host
