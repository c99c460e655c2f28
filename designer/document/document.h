// A form under design: the blocks of its file, the commands that change them, and the way back through every step.
//
// A step is everything that happens between Begin and Commit. What it did is undone by going back to the bytes of the
// file before it, so that no command needs a reverse of its own; what no command touches stays byte for byte.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "designer/document/control_walk.h"
#include "designer/document/selection.h"
#include "host/form_file.h"
#include "host/twips_rect.h"

namespace qvx::host::designer {

class Document {
  public:
    explicit Document(FormFile file);

    // The blocks. Undo, Redo and Cancel replace them, so that pointers into them do not survive these.
    FormFile& File() { return file_; }
    const FormFile& File() const { return file_; }
    std::string Bytes() const { return file_.Write(); }

    // All controls, each container before its contents.
    std::vector<ObjectId> Controls() const;
    Block* Find(const ObjectId& id);
    const Block* Find(const ObjectId& id) const;
    // The same for many at once; null where there is no such control.
    std::vector<const Block*> FindAll(const std::vector<ObjectId>& ids) const;
    // The areas of the controls in pixels, for selecting and drawing.
    Shapes ShapesAt(Dpi dpi) const;
    // Controls in the order in which Tab visits them.
    std::vector<ObjectId> TabOrder() const;

    // --- Steps. Begin may be nested: the outermost counts.
    void Begin();
    // Ends the step; false when it has changed nothing. Steps in a row with the same `merge` (if any) become one. The
    // step is still open when it throws.
    bool Commit(Text what, TextView merge = {});
    // Ends the step, if one is open, and takes back what it did. Needs no memory.
    void Cancel() noexcept;
    bool InStep() const { return depth_ > 0; }
    bool Undo();
    bool Redo();
    // The steps that Undo and Redo would undo and redo; empty when there is none.
    Text UndoName() const { return undo_.empty() ? Text() : undo_.back().what; }
    Text RedoName() const { return redo_.empty() ? Text() : redo_.back().what; }
    // Whether the form differs from the last one marked as saved.
    bool Dirty() const { return state_ != savedState_; }
    void MarkSaved();

    // --- Commands, inside a step. All of them throw RunTimeError with a sentence for the user.
    // A new control in front of the others in its container. `container` is a control that holds others, or nothing
    // for the form.
    ObjectId Place(TextView className, const std::optional<ObjectId>& container, const TwipsRect& bounds);
    void Delete(const std::vector<ObjectId>& ids);
    void SetBounds(const std::vector<ObjectId>& ids, const std::vector<TwipsRect>& bounds);
    void Rename(const ObjectId& id, const Text& name);
    void RenameForm(const Text& name);
    // Makes it an element of the control array of its name; with -1, takes it out of the array.
    void SetIndex(const ObjectId& id, int index);
    // In front of or behind all others in its container, keeping their own order.
    void Restack(const std::vector<ObjectId>& ids, bool front);
    // Tab visits these first, in this order, and then the others in theirs.
    void SetTabOrder(const std::vector<ObjectId>& first);
    // The blocks of controls, with their contents, as text for Paste and for text editors.
    Text CopyText(const std::vector<ObjectId>& ids) const;
    // How many controls a text from CopyText or elsewhere contains. Throws RunTimeError when it is no form text.
    static std::size_t CountIn(TextView text);
    // Controls whose names are taken get new ones; with `asArray`, and for elements of an array, the next index of the
    // same name. Controls that would cover others exactly are moved aside. Returns the new controls.
    std::vector<ObjectId> Paste(TextView text, const std::optional<ObjectId>& container, bool asArray);

    // The position that a block gives its control.
    static TwipsRect BoundsOf(const Block& block);

  private:
    struct Step {
        Text what;
        Text merge;
        std::string bytes;  // of the form that undoing or redoing the step leads to
        unsigned state = 0;
    };

    using Indexes = std::map<Text, std::vector<int>>;  // by folded names; -1 for what is no element of an array

    Indexes UsedNames() const;
    // The first name like "Button1" that is not used.
    static Text FreshNameIn(const Indexes& used, TextView className);
    Block& Require(const ObjectId& id);
    // A control, or the failure to find it.
    static Block& Existing(const Block* found, const ObjectId& id);
    Block& Container(const std::optional<ObjectId>& id);
    void GoTo(std::deque<Step>& from, std::deque<Step>& to);
    void Trim();
    // Controls without a TabIndex are visited in the order of the blocks. Where a change of that order would change
    // what Tab does, their indexes are written into the blocks.
    void KeepTabOrder(const std::vector<ObjectId>& before);

    FormFile file_;
    std::deque<Step> undo_;
    std::deque<Step> redo_;
    int depth_ = 0;
    // The form before the step, as bytes and as the file that Cancel restores.
    std::string before_;
    FormFile unchanged_;
    unsigned state_ = 0;
    unsigned lastState_ = 0;
    unsigned savedState_ = 0;
    bool mayMerge_ = false;
};

}  // namespace qvx::host::designer
