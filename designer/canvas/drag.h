// One drag of the mouse on a form under design, from the press to the release.
#pragma once

#include <optional>
#include <vector>

#include "designer/document/placement.h"

namespace qvx::host::designer {

class Drag {
  public:
    enum class Kind { none, band, move, size, place };

    // `at` is where the button went down, `origin` the top left of the container, to which the positions of controls
    // are relative; both in pixels of the form's inside. `bounds` are those of the controls that are moved or sized.
    void Begin(Kind kind, Point at, Point origin, Dpi dpi);
    void Take(std::vector<TwipsRect> bounds, std::size_t primary, Grip handle = Grip::bottomRight);

    Kind What() const { return kind_; }
    bool Under() const { return kind_ != Kind::none; }
    // The mouse has moved; false while it has not gone far enough to be a drag. `snap` is off while Alt is held.
    bool MoveTo(Point at, bool snap);
    // Whether the mouse has ever gone far enough.
    bool Moved() const { return moved_; }
    void End() { kind_ = Kind::none; }

    // Where the controls would be if the button came up now, in twips of the container; one rectangle for a band or a
    // placement. `usual` is the size of a control that is placed by a click.
    std::vector<TwipsRect> Bounds(Size usual = {}) const;
    // The same in pixels of the form's inside.
    std::vector<Rect> Outlines(Size usual = {}) const;

  private:
    Kind kind_ = Kind::none;
    Point from_;
    Point at_;
    Point origin_;
    Dpi dpi_;
    bool snap_ = true;
    bool moved_ = false;
    std::vector<TwipsRect> start_;
    std::size_t primary_ = 0;
    Grip handle_ = Grip::bottomRight;
};

}  // namespace qvx::host::designer
