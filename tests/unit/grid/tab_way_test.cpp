// The whole way of a Tab, in every kind of container: what happens on it, in order.
#include "controls/grid/tab_way.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

constexpr int ctrl = keys::controlMask;
constexpr int back = keys::shiftMask;

enum class Container {
    delivers,    // never asks
    movesFocus,  // asks, and goes on to the next control
    usesUp,      // asks, and does nothing that shows
    declines,    // asks, and delivers
};

// What a handler does: of the key in KeyDown, of anything in AfterCellChange.
using Handler = std::function<void(struct Keyboard&, short& key)>;

// Columns: No (fixed), A, B (hidden), C (inactive), D (non-focus), E; two data rows. It logs what becomes of keys.
struct Keyboard {
    Container container;
    Handler handler;
    flexgrid::Grid grid;
    ControlState state;
    TabWay way;
    bool focused = true;
    std::string log;

    explicit Keyboard(Container kind) : container(kind) {
        Fill(grid, {u"No\tA\tB\tC\tD\tE", u"1", u"2"});
        grid.SetColWidth(2, 0);
        state.inActiveColumns = u";C;";
        state.nonFocusColumns = u";D;";
    }
    void OpenEditor() {
        state.editRow = grid.Row();
        state.editCol = grid.Col();
    }
    void Press(short key, int shift) {
        const bool atEditor = EditIsOpen(state);
        const auto bits = static_cast<short>(shift);
        const auto deliver = [&] {
            Use(atEditor ? way.ArrivedAtEditor(bits, state, *this) : way.ArrivedAtGrid(key, bits, *this));
        };
        if (key != keys::tab || container == Container::delivers || way.Asked(shift, grid, state, *this)) {
            deliver();
        } else if (container == Container::movesFocus) {
            log += "container ";
            focused = false;
            way.Forget();
        } else if (container == Container::declines) {
            deliver();
        } else {
            log += "used ";
        }
    }

    bool EndEdit() {
        log += "commit ";
        state.editRow = state.editCol = -1;
        const auto before = grid.CurrentCursor();
        short none = 0;
        if (handler) handler(*this, none);
        return grid.CurrentCursor() == before;
    }
    void NotifyKeyDown(short& key, short&) {
        log += "told ";
        if (handler) handler(*this, key);
    }
    bool HasFocus() const { return focused; }

  private:
    void Use(const PressedKey& press) {
        if (press.key == 0) return;
        if (press.key != keys::tab) {
            log += "key" + std::to_string(press.key) + " ";
            return;
        }
        const CellStep step = StepOf(press, grid, state);
        if (step.kind == CellStep::Kind::Leave) {
            log += std::string(press.declined ? "order" : "ask") + (press.Backwards() ? "-back " : " ");
        } else {
            log += (step.kind == CellStep::Kind::AddRow ? "new" : "to") + std::to_string(step.row) + "," +
                   std::to_string(step.col) + " ";
        }
    }
};

// "LEAVE" stands for how each kind of container is left. One that declines a Tab with Ctrl is asked for a plain one.
std::string Expected(std::string text, Container container, int shift) {
    const char* const ways[] = {"ask", "container", "used", "order"};
    std::string way = ways[static_cast<int>(container)];
    if (container == Container::declines && (shift & ctrl) != 0) way = "ask";
    if ((shift & back) != 0 && (way == "ask" || way == "order")) way += "-back";
    if (const auto at = text.find("LEAVE"); at != std::string::npos) text.replace(at, 5, way);
    return text;
}

TEST(TabWay, IsTheSameInEveryContainer) {
    const Handler refuse = [](Keyboard&, short& key) { key = 0; };
    const Handler replace = [](Keyboard&, short& key) { key = keys::home; };
    const Handler leave = [](Keyboard& keyboard, short&) { keyboard.focused = false; };
    const Handler moveOn = [](Keyboard& keyboard, short&) { keyboard.grid.MoveTo(1, 5); };
    const Handler addRow = [](Keyboard& keyboard, short&) { keyboard.grid.SetRows(4); };
    struct Case {
        int row;
        int col;
        bool open;
        int shift;
        const char* does;
        Handler handler = {};
        bool autoTab = true;
        bool addNew = false;
        bool endsEntry = false;
    };
    const Case cases[] = {
        // On the grid
        {1, 1, false, 0, "told to1,5 "},
        {1, 5, false, 0, "told to2,1 "},
        {2, 5, false, 0, "told LEAVE "},
        {2, 5, false, 0, "told new3,1 ", {}, true, true},
        {2, 1, false, back, "told to1,5 "},
        {1, 1, false, back, "told LEAVE "},
        {1, 1, false, 0, "told LEAVE ", {}, false},
        {1, 1, false, ctrl, "told LEAVE "},
        {1, 1, false, 0, "told LEAVE ", {}, true, false, true},
        {2, 5, false, 0, "told ", refuse},
        {1, 1, false, 0, "told ", refuse},
        {2, 5, false, 0, "told key36 ", replace},
        {2, 5, false, 0, "told ", leave},
        {2, 5, false, 0, "told to2,1 ", moveOn},
        {2, 5, false, 0, "told to3,1 ", addRow},
        // In the editor, whose keys hosts do not hear of
        {1, 1, true, 0, "commit to1,5 "},
        {2, 5, true, 0, "commit LEAVE "},
        {2, 5, true, 0, "commit new3,1 ", {}, true, true},
        {1, 1, true, back, "commit LEAVE "},
        {1, 1, true, 0, "commit LEAVE ", {}, false},
        {1, 1, true, ctrl, "commit LEAVE "},
        {2, 5, true, 0, "commit ", leave},
        {2, 5, true, 0, "commit ", moveOn},
        {2, 5, true, 0, "commit to3,1 ", addRow},
    };
    for (const Container container :
         {Container::delivers, Container::movesFocus, Container::usesUp, Container::declines}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << "container " << static_cast<int>(container) << " at " << c.row << ","
                                            << c.col << (c.open ? " open" : "") << " shift " << c.shift);
            Keyboard keyboard(container);
            keyboard.state.autoTab = c.autoTab;
            keyboard.state.autoAddNew = c.addNew;
            keyboard.grid.MoveTo(c.row, c.col);
            keyboard.handler = c.handler;
            if (c.open) keyboard.OpenEditor();
            if (c.endsEntry) keyboard.way.EndEntry();
            keyboard.Press(keys::tab, c.shift);
            EXPECT_EQ(keyboard.log, Expected(c.does, container, c.shift));
            // The host hears of the next key, whatever has become of the Tab.
            keyboard.handler = {};
            keyboard.log.clear();
            keyboard.Press(keys::insert, 0);
            EXPECT_EQ(keyboard.log, "told key45 ");
        }
    }
}

TEST(TabWay, OnlyTheNextTabEndsTheEntry) {
    for (const Container container : {Container::delivers, Container::declines}) {
        Keyboard keyboard(container);
        keyboard.grid.MoveTo(1, 1);
        keyboard.way.EndEntry();
        keyboard.Press(keys::tab, back);
        keyboard.Press(keys::tab, 0);
        EXPECT_EQ(keyboard.log, Expected("told LEAVE told to1,5 ", container, 0));
        keyboard.way.EndEntry();
        keyboard.way.Forget();
        keyboard.log.clear();
        keyboard.Press(keys::tab, 0);
        EXPECT_EQ(keyboard.log, "told to1,5 ") << "the focus was elsewhere";
    }
}

}  // namespace
}  // namespace qvx::grid
