// The inner grid's own events, as its automation object and the control around it raise them.
#pragma once

#include <utility>

#include "com/event_arguments.h"
#include "common/text.h"
#include "widgets/flexgrid/grid_listener.h"
#include "widgets/flexgrid/window_events.h"

namespace qvx::flexgrid {

class GridEventSource : public GridWindowEvents, public GridListener {
  public:
    void Click() override { Raise(u"Click"); }
    void DblClick() override { Raise(u"DblClick"); }
    void KeyDown(short& keyCode, short& shift) override {
        Raise(u"KeyDown", EventArguments().InOut(keyCode).In(shift));
    }
    void KeyPress(short& keyAscii) override { Raise(u"KeyPress", EventArguments().InOut(keyAscii)); }
    void KeyUp(short& keyCode, short shift) override { Raise(u"KeyUp", EventArguments().InOut(keyCode).In(shift)); }
    void MouseDown(short button, short shift, float x, float y) override {
        Raise(u"MouseDown", EventArguments().In(button).In(shift).In(x).In(y));
    }
    void MouseMove(short button, short shift, float x, float y) override {
        Raise(u"MouseMove", EventArguments().In(button).In(shift).In(x).In(y));
    }
    void MouseUp(short button, short shift, float x, float y) override {
        Raise(u"MouseUp", EventArguments().In(button).In(shift).In(x).In(y));
    }
    void Scroll() override { Raise(u"Scroll"); }
    void LeaveCell() override { Raise(u"LeaveCell"); }
    void EnterCell() override { Raise(u"EnterCell"); }
    void RowColChange() override { Raise(u"RowColChange"); }
    void SelChange() override { Raise(u"SelChange"); }

  protected:
    // Calls the host's handlers of the event of that name.
    virtual void Raise(TextView event, EventArguments arguments) = 0;
    void Raise(TextView event) { Raise(event, {}); }
};

}  // namespace qvx::flexgrid
