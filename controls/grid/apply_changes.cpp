#include "controls/grid/apply_changes.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include "common/number_text.h"
#include "common/run_time_error.h"

namespace qvx::grid {
namespace {

constexpr int recordChanged = 30020;

[[noreturn]] void RefuseKey(TextView why, TextView name) {
    Text text(u"Invalid property value: KeyFields names ");
    throw RunTimeError(errors::invalidPropertyValue, text.append(why).append(u" \"").append(name).append(u"\"."));
}

[[noreturn]] void RefuseRecords() {
    throw RunTimeError(recordChanged, u"Records have been changed since they were loaded; nothing has been written.");
}

[[noreturn]] void RefuseMoved() {
    throw RunTimeError(errors::invalidProcedureCall, u"Rows were changed while they were being written.");
}

// A row that has to be written, and the record that it belongs to.
struct Work {
    enum class Kind { update, remove, add };
    Kind kind = Kind::add;
    int row = -1;
    int index = -1;
    Text key;
    std::vector<Text> before;  // the originals of the fields
    std::vector<Text> after;   // their texts now; in a removed row empty
    std::vector<Text> theirs;  // what the record contained
    std::vector<Text> now;     // what it contains after it was written
    int record = 0;            // its place among the records, from 1
    int kept = -1;             // its values before it was written
    bool done = false;
};

int Compare(int a, int b) { return a < b ? -1 : static_cast<int>(a > b); }

// Orders works by their keys, and those with equal keys as the rows are.
int ByKey(const void* a, const void* b) {
    const Work* const first = *static_cast<Work* const*>(a);
    const Work* const second = *static_cast<Work* const*>(b);
    const int order = first->key.compare(second->key);
    return order != 0 ? order : first < second ? -1 : 1;
}

int ByRecord(const void* a, const void* b) {
    return Compare((*static_cast<Work* const*>(a))->record, (*static_cast<Work* const*>(b))->record);
}

// The C library's function takes much less code than a template.
void SortWorks(std::vector<Work*>& works, int (*order)(const void*, const void*)) {
    if (!works.empty()) std::qsort(works.data(), works.size(), sizeof(void*), order);
}

// Writing takes far longer than deciding what to write, so that the code may as well be small.
class Applying {
  public:
    [[gnu::cold]] Applying(flexgrid::Grid& grid, RowStates& states, const FieldMap& map, RecordTarget& target,
                           TextView keyFields)
        : grid_(grid), states_(states), target_(target), names_(target.FieldNames()) {
        for (int col = 0; col < std::min(map.Columns(), grid.Cols()); ++col)
            if (const auto field = map.FieldOf(col)) fields_.push_back({*field, col});
        if (fields_.empty()) throw RunTimeError(errors::invalidProcedureCall, u"No column has a field of the records.");
        ReadKeys(keyFields);
    }

    [[gnu::cold]] int Run(const std::function<ConflictAnswer(const RecordConflict&)>& ask) {
        Collect(work_);
        if (work_.empty()) return 0;
        const std::uint64_t structure = grid_.StructureVersion();
        Match();
        const ConflictAnswer answer = Ask(ask);
        if (answer == ConflictAnswer::cancel) return 0;
        if (answer == ConflictAnswer::keep) RefuseRecords();
        TakeTextsAgain(structure);
        Write();
        for (const Work& work : work_) Show(work);
        states_.Accept();
        return static_cast<int>(std::count_if(work_.begin(), work_.end(), [](const Work& work) { return work.done; }));
    }

  private:
    struct Field {
        int number;
        int col;
    };

    [[gnu::cold]] void ReadKeys(TextView list) {
        while (!list.empty()) {
            const std::size_t comma = list.find(u',');
            TextView name = list.substr(0, comma);
            list = comma == TextView::npos ? TextView() : list.substr(comma + 1);
            while (name.starts_with(u' ')) name.remove_prefix(1);
            while (name.ends_with(u' ')) name.remove_suffix(1);
            const auto number = PlaceOf(name, names_);
            if (!number) RefuseKey(u"the unknown field", name);
            const auto field =
                std::find_if(fields_.begin(), fields_.end(), [&](const Field& f) { return f.number == *number; });
            if (field == fields_.end()) RefuseKey(u"a field without a column,", name);
            keys_.push_back(static_cast<std::size_t>(field - fields_.begin()));
        }
    }

    // ---- What there is to write ------------------------------------------------------------------------------------

    // Where the text of a field comes from: the row, its originals, a deleted row or the current record.
    enum class Source { row, originals, deleted, record };

    [[gnu::cold]] Text TextOf(Source source, int at, const Field& field) const {
        switch (source) {
            case Source::row:
                return grid_.TextMatrix(at, field.col);
            case Source::originals:
                return states_.OriginalText(at, field.col);
            case Source::deleted:
                return states_.DeletedText(at, field.col);
            default:
                return target_.Value(field.number);
        }
    }

    [[gnu::cold]] std::vector<Text> TextsOf(Source source, int at) const {
        std::vector<Text> texts;
        for (const Field& field : fields_) texts.push_back(TextOf(source, at, field));
        return texts;
    }

    [[gnu::cold]] Text KeyOf(const std::vector<Text>& texts, int number) const {
        if (keys_.empty()) return IntegerToText(number);
        Text key;
        for (const std::size_t place : keys_) key.append(texts[place]).append(1, u'\t');
        return key;
    }

    [[gnu::cold]] void Collect(std::vector<Work>& works) const {
        for (int row = grid_.FixedRows(); row < grid_.Rows(); ++row) {
            const RowState state = states_.Of(row);
            if (state == RowState::unchanged) continue;
            Work work;
            work.row = row;
            work.after = TextsOf(Source::row, row);
            work.before.resize(fields_.size());
            if (state == RowState::changed) {
                work.kind = states_.IsEmpty(row) ? Work::Kind::remove : Work::Kind::update;
                work.before = TextsOf(Source::originals, row);
                work.key = KeyOf(work.before, states_.RecordNumber(row));
            }
            // Texts in columns without a field cannot be written.
            if (work.after != work.before) works.push_back(std::move(work));
        }
        for (int index = 0; index < states_.DeletedCount(); ++index) {
            Work work;
            work.kind = Work::Kind::remove;
            work.index = index;
            work.before = TextsOf(Source::deleted, index);
            work.after.resize(fields_.size());
            work.key = KeyOf(work.before, states_.Deleted(index).number);
            works.push_back(std::move(work));
        }
    }

    [[gnu::cold]] std::vector<Text> Theirs() const { return TextsOf(Source::record, 0); }

    // Finds the records of the rows.
    [[gnu::cold]] void Match() {
        std::vector<Work*> wanted;
        for (Work& work : work_)
            if (work.kind != Work::Kind::add) wanted.push_back(&work);
        SortWorks(wanted, ByKey);
        std::vector<Text> texts(fields_.size());
        for (target_.MoveFirst(); !target_.AtEnd(); target_.MoveNext()) {
            ++records_;
            for (const std::size_t place : keys_) texts[place] = target_.Value(fields_[place].number);
            const Text key = KeyOf(texts, records_);
            auto found = std::lower_bound(wanted.begin(), wanted.end(), key,
                                          [](const Work* work, const Text& k) { return work->key < k; });
            while (found != wanted.end() && (*found)->key == key && (*found)->record > 0) ++found;
            if (found == wanted.end() || (*found)->key != key) continue;
            (*found)->record = records_;
            (*found)->theirs = Theirs();
        }
    }

    // ---- Conflicts -------------------------------------------------------------------------------------------------

    [[gnu::cold]] ConflictAnswer Ask(const std::function<ConflictAnswer(const RecordConflict&)>& ask) {
        ConflictAnswer all = ConflictAnswer::overwrite;
        const auto put = [&](const RecordConflict& conflict) {
            const ConflictAnswer answer = ask(conflict);
            if (answer != ConflictAnswer::overwrite) all = answer;
            return answer != ConflictAnswer::cancel;
        };
        for (Work& work : work_) {
            if (work.kind == Work::Kind::add) continue;
            if (work.record == 0) {
                if (!put({work.row, work.index, {}, {}, {}})) return all;
                if (work.kind == Work::Kind::update) work.kind = Work::Kind::add;
                continue;
            }
            for (std::size_t i = 0; i < fields_.size(); ++i) {
                if (work.theirs[i] == work.before[i]) continue;
                const Text& name = names_[static_cast<std::size_t>(fields_[i].number)];
                if (!put({work.row, work.index, name, work.after[i], work.theirs[i]})) return all;
            }
        }
        return all;
    }

    // A handler of conflicts may have written other texts into the cells, but must not have moved rows.
    [[gnu::cold]] void TakeTextsAgain(std::uint64_t structure) {
        if (structure != grid_.StructureVersion()) RefuseMoved();
        std::vector<Work> now;
        Collect(now);
        bool same = now.size() == work_.size();
        for (std::size_t i = 0; same && i < now.size(); ++i) {
            Work& work = work_[i];
            same = now[i].row == work.row && now[i].index == work.index &&
                   (now[i].kind == Work::Kind::remove) == (work.kind == Work::Kind::remove);
            work.after.swap(now[i].after);
        }
        if (!same) RefuseMoved();
    }

    // ---- Writing ---------------------------------------------------------------------------------------------------

    // Calls visit(Work&) for the works of a kind that are done or are to be done, with their record as the current one.
    // Records that were deleted are not counted any more.
    template <class Visit>
    [[gnu::cold]] void ForEachRecord(Work::Kind kind, bool done, Visit visit) {
        std::vector<Work*> visited;
        std::vector<Work*> deleted;
        for (Work& work : work_) {
            if (work.kind == kind && work.record > 0 && work.done == done) visited.push_back(&work);
            if (work.kind == Work::Kind::remove && work.done) deleted.push_back(&work);
        }
        if (visited.empty()) return;
        SortWorks(visited, ByRecord);
        SortWorks(deleted, ByRecord);
        std::size_t before = 0;
        target_.MoveFirst();
        int at = 1;
        for (Work* work : visited) {
            while (before < deleted.size() && deleted[before]->record < work->record) ++before;
            for (const int place = work->record - static_cast<int>(before); at < place && !target_.AtEnd(); ++at)
                target_.MoveNext();
            if (target_.AtEnd() || Theirs() != (done ? work->now : work->theirs)) RefuseRecords();
            visit(*work);
        }
    }

    [[gnu::cold]] void Write() {
        const bool transaction = target_.Begin();
        try {
            ForEachRecord(Work::Kind::remove, false, [&](Work& work) {
                work.kept = target_.Keep();
                target_.Delete();
                work.done = true;
            });
            ForEachRecord(Work::Kind::update, false, [&](Work& work) {
                if (work.after == work.theirs) return;
                work.kept = target_.Keep();
                Fill(work, work.theirs);
            });
            for (Work& work : work_) {
                if (work.kind != Work::Kind::add) continue;
                target_.AddNew();
                Fill(work, std::vector<Text>(fields_.size()));
            }
            if (transaction) target_.Commit();
        } catch (...) {
            const RunTimeError error = CurrentError();
            if (!(transaction ? Tried([&] { target_.Rollback(); }) : Undo()))
                throw RunTimeError(error.Number(),
                                   Text(error.Description()).append(u" Not everything that was written is undone."));
            throw error;
        }
    }

    // Writes the texts that differ into the current record, and reads what it contains then.
    [[gnu::cold]] void Fill(Work& work, const std::vector<Text>& current) {
        try {
            for (std::size_t i = 0; i < fields_.size(); ++i)
                if (work.after[i] != current[i]) target_.SetValue(fields_[i].number, work.after[i]);
            target_.Update();
        } catch (...) {
            Tried([&] { target_.CancelUpdate(); });
            throw;
        }
        work.done = true;
        work.now = work.after;
        Tried([&] { work.now = Theirs(); });
    }

    template <class Step>
    static bool Tried(Step step) {
        try {
            step();
            return true;
        } catch (...) {
            return false;
        }
    }

    [[gnu::cold]] void PutBack(const Work& work) {
        try {
            target_.PutBack(work.kept);
            target_.Update();
        } catch (...) {
            Tried([&] { target_.CancelUpdate(); });
            throw;
        }
        if (Theirs() != work.theirs) RefuseRecords();
    }

    // Returns whether everything is as before.
    [[gnu::cold]] bool Undo() {
        bool undone = Tried([&] { DeleteAdded(); });
        undone =
            Tried([&] { ForEachRecord(Work::Kind::update, true, [&](const Work& work) { PutBack(work); }); }) && undone;
        for (const Work& work : work_) {
            if (work.kind != Work::Kind::remove || !work.done) continue;
            undone = Tried([&] {
                         target_.AddNew();
                         PutBack(work);
                     }) &&
                     undone;
        }
        return undone;
    }

    // The added records are the last ones.
    [[gnu::cold]] void DeleteAdded() {
        std::vector<const Work*> added;
        int left = records_;
        for (const Work& work : work_) {
            if (!work.done) continue;
            if (work.kind == Work::Kind::add) added.push_back(&work);
            if (work.kind == Work::Kind::remove) --left;
        }
        if (added.empty()) return;
        target_.MoveFirst();
        for (; left > 0 && !target_.AtEnd(); --left) target_.MoveNext();
        for (const Work* work : added) {
            if (target_.AtEnd() || Theirs() != work->now) RefuseRecords();
            target_.Delete();
            target_.MoveNext();
        }
    }

    // Shows what a record contains, such as a number that the database has given it.
    [[gnu::cold]] void Show(const Work& work) {
        for (std::size_t i = 0; i < work.now.size(); ++i)
            if (work.now[i] != work.after[i]) grid_.SetTextMatrix(work.row, fields_[i].col, work.now[i]);
    }

    flexgrid::Grid& grid_;
    RowStates& states_;
    RecordTarget& target_;
    std::vector<Text> names_;
    std::vector<Field> fields_;      // those with a column
    std::vector<std::size_t> keys_;  // their places among the fields
    std::vector<Work> work_;
    int records_ = 0;  // how many there were before anything was written
};

}  // namespace

[[gnu::cold]] int ApplyChanges(flexgrid::Grid& grid, RowStates& states, const FieldMap& map, RecordTarget& target,
                               TextView keyFields, const std::function<ConflictAnswer(const RecordConflict&)>& ask) {
    return Applying(grid, states, map, target, keyFields).Run(ask);
}

}  // namespace qvx::grid
