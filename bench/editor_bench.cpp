// The editor on the 50,000-face model: opening it into a shown window against reading it
// alone, undo plus redo of a reparent and of a delete, and the memory the undo stack holds
// after 1,000 field edits. Playback of a 20,000-face model, textured, against drawing the
// same frame again, and one timer step without the draw. Needs a display (bench/run.sh uses
// xvfb-run when there is none).
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <QApplication>
#include <QCheckBox>
#include <QTemporaryDir>

#include <memory>

#include "bench_models.h"
#include "editor/animation_strip.h"
#include "editor/document.h"
#include "editor/edit_commands.h"
#include "editor/file_commands.h"
#include "editor/main_window.h"
#include "editor/panels/panel_host.h"
#include "editor/panels/subobject_panel.h"
#include "editor/playback.h"
#include "editor/prompts.h"
#include "editor/tree/model_tree.h"
#include "editor/tree/tree_control.h"
#include "editor/viewport.h"
#include "editor/widgets/spin_control.h"
#include "model/file_io.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "view/offscreen.h"

namespace mw {
namespace {

// Answers every question with "Discard" and every dialog with nothing.
class QuietPrompts : public Prompts {
  public:
    QString OpenFileName(QWidget*, const QString&, const QString&, const QString&) override {
        return {};
    }
    QString SaveFileName(QWidget*, const QString&, const QString&, const QString&) override {
        return {};
    }
    void Message(QWidget*, const QString&, PromptIcon) override {}
    QMessageBox::StandardButton Ask(QWidget*, const QString&, QMessageBox::StandardButtons,
                                    PromptIcon) override {
        return QMessageBox::Discard;
    }
    QColor ChooseColor(QWidget*, const QColor&) override { return {}; }
    int Choose(QWidget*, const QString&, const QStringList&, PromptIcon) override { return -1; }
};

struct Editor {
    QTemporaryDir dir;
    QString path;
    Settings settings;
    GameData game;
    clsOOF oof;
    QuietPrompts prompts;
    std::unique_ptr<frmOOF> window;
};

// The window is made once, shown, and released by main while the application exists.
std::unique_ptr<Editor>& EditorSlot() {
    static std::unique_ptr<Editor> editor;
    return editor;
}

Editor& TheEditor() {
    auto& e = EditorSlot();
    if (!e) {
        e = std::make_unique<Editor>();
        e->path = e->dir.filePath("large.oof");
        ModelData m = LargeModel(100, 500);
        SaveOOF(m, e->path.toStdString());
        e->window = std::make_unique<frmOOF>(e->oof, e->game, e->settings, QPixmap(), &e->prompts);
        e->window->resize(1100, 760);
        e->window->show();
        for (int i = 0; i < 20; ++i)
            QApplication::processEvents();
    }
    return *e;
}

void Settle() {
    QApplication::processEvents();
}

void ReadLargeModelFile(benchmark::State& state) {
    Editor& e = TheEditor();
    for (auto _ : state) {
        ModelData m;
        const auto bytes = ReadFileBytes(e.path.toStdString());
        if (!bytes || readOOF(m, *bytes) != ResultCode::Success) state.SkipWithError("read");
        benchmark::DoNotOptimize(m.SubObjects.data());
    }
}

Viewport& ViewportOf(frmOOF& window) {
    return *window.findChild<Viewport*>();
}

void OpenLargeModelInWindow(benchmark::State& state) {
    Editor& e = TheEditor();
    for (auto _ : state) {
        if (!e.window->LoadModel(e.path)) state.SkipWithError("load");
        Settle();
        ViewportOf(*e.window).grabFramebuffer();  // the first frame drawn
    }
}

Document& LoadedDocument() {
    Editor& e = TheEditor();
    Document& doc = e.window->document();
    if (doc.ModelPath() != e.path || doc.isModified() || doc.undoStack().count() > 0) {
        e.window->LoadModel(e.path);
        Settle();
    }
    return doc;
}

// The time of one undo and one redo, the views (tree, panels, viewport lists) following; the
// frame the viewport then draws is left out (the frame-rate benchmarks measure it).
void UndoRedo(benchmark::State& state, QUndoCommand* (*make)(Document&)) {
    Document& doc = LoadedDocument();
    if (!doc.Apply(make(doc))) state.SkipWithError("refused");
    Settle();
    for (auto _ : state) {
        doc.undoStack().undo();
        doc.undoStack().redo();
        state.PauseTiming();
        Settle();
        state.ResumeTiming();
    }
    doc.undoStack().undo();
    doc.undoStack().clear();
}

// A child sub-object given another parent, and deleted.
int AChild(const ModelData& m) {
    for (int k = m.SubObjectCount() - 1; k >= 0; --k) {
        if (m.Sub(m.Head(k)).Parent != -1) return m.Head(k);
    }
    return -1;
}

void UndoRedoReparent(benchmark::State& state) {
    UndoRedo(state, [](Document& doc) {
        const int s = AChild(doc.model());
        doc.SelectSubObject(s);
        return MakeReparentCommand(doc, s, -1);
    });
}

void UndoRedoDelete(benchmark::State& state) {
    UndoRedo(state, [](Document& doc) {
        doc.SelectSubObject(AChild(doc.model()));
        return MakeDeleteCommand(doc);
    });
}

// The heap the undo stack holds after 1,000 separate field edits (offsets of sub-objects).
void UndoStackAfterFieldEdits(benchmark::State& state) {
    Document& doc = LoadedDocument();
    double held = 0;
    for (auto _ : state) {
        state.PauseTiming();
        doc.undoStack().clear();
        const std::size_t before = mallinfo2().uordblks;
        state.ResumeTiming();
        for (int i = 0; i < 1000; ++i) {
            const int s = i % doc.model().SubObjectCount();
            Vector3 offset = doc.model().Sub(s).Offset;
            offset.X += 0.25f;
            doc.Apply(MakeSubObjectFieldCommand(doc, "Offset", EditField::SubObjectOffset, s,
                                                &SubObject::Offset, offset));
            doc.EndEditSession();
        }
        state.PauseTiming();
        held = static_cast<double>(mallinfo2().uordblks - before);
        if (doc.undoStack().count() != 1000) state.SkipWithError("not 1000 steps");
        while (doc.undoStack().canUndo())
            doc.undoStack().undo();
        state.ResumeTiming();
    }
    state.counters["undo_stack_MB"] = held / (1024.0 * 1024.0);
    doc.undoStack().clear();
}

// For comparison: what one structural step (a delete) keeps.
void DeleteStepSnapshot(benchmark::State& state) {
    Document& doc = LoadedDocument();
    std::size_t bytes = 0;
    for (auto _ : state) {
        doc.SelectSubObject(AChild(doc.model()));
        auto* command = static_cast<ModelCommand*>(MakeDeleteCommand(doc));
        command->redo();
        bytes = command->ByteSize();
        command->undo();
        delete command;
    }
    state.counters["snapshot_KB"] = static_cast<double>(bytes) / 1024.0;
}

// PopulateTree of a model of 30 sub-objects with 64 gun points and 30 other points, and of
// the 100-sub-object model.
void PopulateTree(benchmark::State& state) {
    clsOOF oof;
    oof.data() = LargeModel(state.range(0) == 0 ? 30 : 100, 2);
    ModelData& m = oof.data();
    if (state.range(0) == 0) {
        for (int i = 0; i < 64; ++i)
            m.GunPoints.push_back({i % 30, {}, {0, 0, 1}});
        for (int i = 0; i < 10; ++i) {
            m.AttachPoints.push_back({i, {}, {0, 1, 0}});
            m.AttachNormals.push_back({i + 10, {}, {0, 1, 0}});
            m.GroundPoints.push_back({i + 20, {}, {0, -1, 0}});
        }
    }
    Document doc(oof);
    treeControl control;
    ModelTree tree(control, doc);
    for (auto _ : state)
        tree.PopulateTree();
    int nodes = 0;
    for (QTreeWidgetItemIterator it(&control); *it != nullptr; ++it)
        ++nodes;
    state.counters["nodes"] = nodes;
}

// One spinner step of the selected sub-object's radius on the 50,000-face model: from the
// value change to the model written and the redraw requested (the views follow at once).
void SpinnerStep(benchmark::State& state) {
    Document& doc = LoadedDocument();
    Editor& e = TheEditor();
    doc.SelectSubObject(AChild(doc.model()));
    Settle();
    auto* radius = e.window->findChild<spinControl*>("txtSOBJRadius");
    if (radius == nullptr) state.SkipWithError("no spinner");
    const int lists = ViewportOf(*e.window).renderer().ListBuilds();
    float value = radius->Value();
    for (auto _ : state) {
        value += 0.01f;
        radius->SetValue(value);
    }
    state.counters["list_builds"] = ViewportOf(*e.window).renderer().ListBuilds() - lists;
    doc.EndEditSession();
    doc.undoStack().clear();
}

// The player: the editor on a 20,000-face model whose 80 sub-objects all carry position and
// rotation keys, drawn textured, the Animation tab showing and a sub-object selected.
std::unique_ptr<Editor>& PlayerSlot() {
    static std::unique_ptr<Editor> player;
    return player;
}

Editor& ThePlayer() {
    auto& p = PlayerSlot();
    if (!p) {
        p = std::make_unique<Editor>();
        p->path = p->dir.filePath("animated.oof");
        ModelData m = LargeModel(80, 250);
        SaveOOF(m, p->path.toStdString());
        p->window = std::make_unique<frmOOF>(p->oof, p->game, p->settings, QPixmap(), &p->prompts);
        p->window->resize(1100, 760);
        p->window->show();
        Settle();
        p->window->LoadModel(p->path);
        p->window->document().SetViewType(ViewType::Textured);
        p->window->findChild<PanelHost*>()->ShowPanel("Animation");
        p->window->document().SelectSubObject(5);
        p->window->findChild<QCheckBox*>("chkPlayContinuously")->setChecked(true);
        for (int i = 0; i < 20; ++i)
            Settle();
    }
    return *p;
}

// One frame as the player shows it: the timer step (`advance`: frame moving, otherwise the
// same frame drawn again) and the viewport drawn.
void PlayFrames(benchmark::State& state, bool advance) {
    Editor& p = ThePlayer();
    Viewport& view = ViewportOf(*p.window);
    Document& doc = p.window->document();
    Playback& playback = *p.window->findChild<Playback*>();
    playback.SetClock([] { return 1.0f / 60.0f; });
    doc.SetPlaying(advance);
    for (auto _ : state) {
        playback.Tick();
        // Draws the frame and reads it back: finished, and a little more than the screen needs.
        benchmark::DoNotOptimize(view.grabFramebuffer());
    }
    doc.SetPlaying(false);
    state.counters["fps"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void PlaybackFrames(benchmark::State& state) {
    PlayFrames(state, true);
}

// The baseline: the same frame drawn again without playback.
void StillFrames(benchmark::State& state) {
    PlayFrames(state, false);
}

// One timer step of playback without the draw: the frame, the timeline, the current frame
// spinner and the animation panel follow.
void PlaybackTimerStep(benchmark::State& state) {
    Editor& p = ThePlayer();
    Document& doc = p.window->document();
    Playback& playback = *p.window->findChild<Playback*>();
    playback.SetClock([] { return 1.0f / 600.0f; });
    doc.SetPlaying(true);
    for (auto _ : state) {
        playback.Tick();
    }
    doc.SetPlaying(false);
    Settle();
}

BENCHMARK(StillFrames)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(PlaybackFrames)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(PlaybackTimerStep)->Unit(benchmark::kMicrosecond);
BENCHMARK(PopulateTree)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(SpinnerStep)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadLargeModelFile)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OpenLargeModelInWindow)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(UndoRedoReparent)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(UndoRedoDelete)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(UndoStackAfterFieldEdits)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(DeleteStepSnapshot)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mw

int main(int argc, char** argv) {
    mw::ApplyViewFormat();
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    mw::EditorSlot().reset();
    mw::PlayerSlot().reset();
    return 0;
}
