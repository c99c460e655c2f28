// What the benchmarks of the library in a host share: the library as a program loads it, a form, and a ComboGrid on it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "Qvx.h"
#include "bench/support/measure.h"
#include "samples/cpp/control_site.h"

namespace qvx::bench {

// Ends the run: nothing that follows would be measured as it is meant.
void Require(bool good, const char* what);

// The options of the programs for hosts: [--quick] for about a third of the time, [--only=NAME] for one group of works,
// [--kind=NAME] for the steps of one kind of control, such as a profile needs.
struct HostOptions {
    bool quick = false;
    std::string only;
    std::string kind;

    HostOptions(int argc, char** argv);
    bool Wants(const char* group) const { return only.empty() || only == group; }
    std::size_t Samples() const { return quick ? 5 : 9; }
};

// Takes a sample of each run of the work.
template <class Work>
std::vector<double> Sampled(std::size_t runs, Work work) {
    std::vector<double> samples;
    for (std::size_t run = 0; run < runs; ++run) {
        const Stopwatch watch;
        work();
        samples.push_back(watch.Seconds());
    }
    return samples;
}

// Qvx.ocx beside the program, as it is shipped.
std::wstring ServerPath();

using ClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
using CanUnload = HRESULT(WINAPI*)();

template <class Function>
Function Export(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// The library in this process, whose classes are offered without the registry. Unloads it at its end.
class LoadedServer {
  public:
    LoadedServer();
    ~LoadedServer();
    LoadedServer(const LoadedServer&) = delete;
    LoadedServer& operator=(const LoadedServer&) = delete;

  private:
    HMODULE module_;
    std::vector<DWORD> offers_;
};

class HostForm final : public Container {
  public:
    HostForm();
    ~HostForm();
    HostForm(const HostForm&) = delete;
    HostForm& operator=(const HostForm&) = delete;

    HWND Window() override { return window_; }
    void FocusEntered(ControlSite&) override {}
    void MoveFocus(ControlSite&, bool) override {}

    // The place of a control among others, in rows of ten.
    static RECT Place(int index);

  private:
    HWND window_;
};

// Handles the waiting messages, and offers keys to the control first if there is one. Paints what is invalid.
void HandleMessages(ControlSite* control = nullptr);

// A ComboGrid that is shown on a form: a header and `cols` columns after the one for row numbers.
class GridForm {
  public:
    explicit GridForm(int cols);
    ~GridForm();
    GridForm(const GridForm&) = delete;
    GridForm& operator=(const GridForm&) = delete;

    _ComboGrid* operator->() const { return grid_.Get(); }
    _ComboGrid* Grid() const { return grid_.Get(); }
    // The grid inside.
    IFlexGrid* Inner() const { return inner_.Get(); }
    ControlSite& Site() { return site_; }
    HWND Window() { return form_.Window(); }
    long Rows() const;
    std::wstring Cell(long row, long col) const;
    // Replaces the data rows by `rows` ones with the workload's texts, none of them equal.
    void Fill(std::size_t rows);

  private:
    HostForm form_;
    ControlSite site_{form_};
    Reference<_ComboGrid> grid_;
    Reference<IFlexGrid> inner_;
};

// The groups of works.
void RunBindWorks(const HostOptions& options);
void RunArrayWorks(const HostOptions& options);
void RunCellWorks(const HostOptions& options);
void RunGridWorks(const HostOptions& options);
void RunTypingWorks(const HostOptions& options);
void RunLibraryWorks(const HostOptions& options);

}  // namespace qvx::bench
