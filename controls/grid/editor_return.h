// What becomes of an edit that stayed open while the user was in another program.
#pragma once

namespace qvx::grid {

enum class EditorReturn {
    Wait,       // the user has not returned
    Stay,       // the editor has the focus again
    TakeFocus,  // the form is active, but nothing in it has the focus
    Commit,     // the user has returned to something else in the program
};

// `active`: a window of the program is active; `formActive`: it is the form with the grid; `editorFocused`: the editor
// has the focus; `unplaced`: the form itself has it, the grid, or nothing.
constexpr EditorReturn DecideReturn(bool active, bool formActive, bool editorFocused, bool unplaced) {
    if (!active) return EditorReturn::Wait;
    if (editorFocused) return EditorReturn::Stay;
    return formActive && unplaced ? EditorReturn::TakeFocus : EditorReturn::Commit;
}

}  // namespace qvx::grid
