// What keeping a sticky note as it is typed costs per key: the journal's append of the whole
// text (what the store does) against an atomic rewrite of the note's file with its sync (the
// other way to lose no key), for a short note and one at the cap, in a real temporary folder.
#include "platform/AtomicFile.h"
#include "platform/Scheduler.h"
#include "workspace/NoteEditor.h"
#include "workspace/NoteStore.h"

#include <QTemporaryDir>
#include <QUuid>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

// Timers that never fire: the pause's rewrite is not what is measured here.
class StillScheduler final : public Scheduler {
public:
    ScheduledTask singleShot(Duration, Duration, const QObject*, std::function<void()>) override {
        return ScheduledTask([] {});
    }
    ScheduledTask repeating(Duration, Duration, const QObject*, std::function<void()>) override {
        return ScheduledTask([] {});
    }
};

QString note(qsizetype size) {
    QString text;
    while (text.size() < size) {
        text += QStringLiteral("- a line of the note, with **bold** words\n");
    }
    return text.left(size);
}

void journalPerKey(benchmark::State& state) {
    QTemporaryDir dir;
    StillScheduler scheduler;
    NoteStore store(dir.path(), scheduler);
    const QUuid id = QUuid::createUuid();
    QString text = note(state.range(0));
    int keys = 0;
    for (auto _ : state) {
        text[text.size() - 1] = text.back() == u'a' ? u'b' : u'a';
        store.setText(id, text);
        // The pause's rewrite, which empties the journal, stays out of the measure.
        if (++keys % 100 == 0) {
            state.PauseTiming();
            store.flush(id);
            state.ResumeTiming();
        }
    }
}

void atomicWritePerKey(benchmark::State& state) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("note.md"));
    QString text = note(state.range(0));
    for (auto _ : state) {
        text[text.size() - 1] = text.back() == u'a' ? u'b' : u'a';
        benchmark::DoNotOptimize(AtomicFile::write(path, text.toUtf8()).ok());
    }
}

} // namespace

BENCHMARK(journalPerKey)->Arg(2000)->Arg(NoteEditor::longest)->Unit(benchmark::kMicrosecond);
BENCHMARK(atomicWritePerKey)->Arg(2000)->Arg(NoteEditor::longest)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
