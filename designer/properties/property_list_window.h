// The property list of the forms designer: a child window that shows and edits the properties of the selected objects,
// as their type information describes them.
//
//     PropertyListWindow list;
//     list.onChanged = [&](TextView name) { document.MarkChanged(); };
//     list.Create(parent, {0, 0, 260, 500});
//     list.Show({{u"cmdOk", extended, own, control}}, {u"frmOrders", u"cmdOk", u"txtName"});
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>

#include <functional>
#include <memory>
#include <vector>

#include "com/pointer.h"
#include "common/geometry.h"
#include "common/text.h"
#include "designer/properties/listed_properties.h"
#include "win/window.h"

namespace qvx::host::designer {

class PropertyListWindow : public Window {
  public:
    // One of the objects whose properties are shown. Any of the pointers may be null.
    struct Subject {
        Text title;                    // its entry in the selector: "cmdOk Button"
        ComPtr<IDispatch> extended{};  // what the form adds: Name, Left, TabIndex ...
        ComPtr<IDispatch> own{};       // the object's own members
        ComPtr<IUnknown> control{};    // for property pages and IPerPropertyBrowsing
    };

    PropertyListWindow();
    ~PropertyListWindow() override;

    // `bounds` in pixels of the parent's client area. False when the system refuses a window.
    bool Create(HWND parent, const Rect& bounds);

    // The common properties of one or several objects; none empties the list. `allTitles` fill the selector, in which
    // the first subject's title is picked. An edit that is open is dropped.
    void Show(std::vector<Subject> subjects, std::vector<Text> allTitles);
    // Reads all values again, after the objects were changed elsewhere.
    void RefreshValues();

    // Writes a value as the list itself does, with the notifications below and a message to the user when it is
    // refused. False when it was refused, or when there is no such property.
    bool SetValue(TextView name, const PropertyValue& value);
    // From a file, or none for an empty path.
    bool SetPicture(TextView name, const Text& path);
    // What is shown; null before the first Show.
    const ListedProperties* Table() const;
    void SetOrder(PropertyOrder order);
    // Makes the property's row the current one, if it is there.
    void GoTo(TextView name);
    // The name of the current row's property; empty for a heading.
    Text CurrentProperty() const;
    // The window with the rows, which takes the keys.
    HWND RowsWindow() const;

    // Another object was picked in the selector; the index is that of `allTitles`.
    std::function<void(std::size_t index)> onSelect;
    // A value is about to be written.
    std::function<void()> onBeforeChange;
    // A value has been written to all objects.
    std::function<void(TextView name)> onChanged;
    // The user asks for the property pages of a subject.
    std::function<void(std::size_t subject)> onPages;
    // Loads a picture from a file; without, the list does so itself. May throw RunTimeError.
    std::function<ComPtr<IPictureDisp>(const Text& path)> onLoadPicture;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    class View;
    std::unique_ptr<View> view_;
};

}  // namespace qvx::host::designer
