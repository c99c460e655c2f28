// The dialogs that edit parts of the form: menus, image lists and property pages.
#pragma once

#include <windows.h>

#include "designer/design_session_window.h"
#include "designer/designer_views_window.h"
#include "designer/kept_pictures_win32.h"

namespace qvx::host::designer {

class DesignerEditors {
  public:
    // All of these outlive it.
    DesignerEditors(const DesignerEnvironment& environment, DesignSession& session, DesignerViews& views,
                    KeptPictures& pictures)
        : environment_(environment), session_(session), views_(views), pictures_(pictures) {}

    void EditMenus();
    // Of the primary, if it is an image list.
    void EditImages();
    // The property pages of a control; of one that has none, its images or the property list.
    void ShowPages(const ObjectId& id);
    // The same for an object of the property list, where the primary is 0.
    void ShowPagesOfSubject(std::size_t subject);

  private:
    const DesignerEnvironment& environment_;
    DesignSession& session_;
    DesignerViews& views_;
    KeptPictures& pictures_;
};

}  // namespace qvx::host::designer
