// The design-time framework against raw meta-object access.
// 1. The editors and their values of one QPushButton (every property, no events) against
//    reading the same properties with QMetaProperty::read. Goal: within 3x.
// 2. The common properties of 1,000 selected widgets of mixed classes against those of one
//    widget. Goal: within 10x.

#include "platform/kvPropertyEditor.h"
#include "platform/kvPropertyRegistry.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

void RawRead(benchmark::State &state)
{
    QPushButton button(QStringLiteral("OK"));
    const QMetaObject *metaObject = button.metaObject();
    for (auto _ : state) {
        for (int i = 0; i < metaObject->propertyCount(); ++i) {
            QVariant value = metaObject->property(i).read(&button);
            benchmark::DoNotOptimize(value);
        }
    }
    state.counters["properties"] = metaObject->propertyCount();
}

void EditorValues(benchmark::State &state)
{
    QPushButton button(QStringLiteral("OK"));
    int count = 0;
    for (auto _ : state) {
        count = 0;
        kv::GetComponentProperties({&button}, kv::TTypeKinds::Properties(), nullptr,
                                   [&](std::unique_ptr<kv::TPropertyEditor> editor) {
                                       QString value = editor->GetValue();
                                       benchmark::DoNotOptimize(value);
                                       ++count;
                                   });
    }
    state.counters["properties"] = count;
}

// Widgets of five classes, in turn.
std::vector<std::unique_ptr<QWidget>> MixedWidgets(int count)
{
    std::vector<std::unique_ptr<QWidget>> widgets;
    widgets.reserve(size_t(count));
    for (int i = 0; i < count; ++i) {
        switch (i % 5) {
        case 0: widgets.push_back(std::make_unique<QPushButton>()); break;
        case 1: widgets.push_back(std::make_unique<QLabel>()); break;
        case 2: widgets.push_back(std::make_unique<QLineEdit>()); break;
        case 3: widgets.push_back(std::make_unique<QCheckBox>()); break;
        default: widgets.push_back(std::make_unique<QSpinBox>()); break;
        }
    }
    return widgets;
}

void CommonProperties(benchmark::State &state)
{
    const auto widgets = MixedWidgets(int(state.range(0)));
    QList<QObject *> selection;
    for (const auto &widget : widgets)
        selection.append(widget.get());
    int count = 0;
    for (auto _ : state) {
        count = 0;
        kv::GetComponentProperties(selection, kv::TTypeKinds::Properties(), nullptr,
                                   [&](std::unique_ptr<kv::TPropertyEditor> editor) {
                                       benchmark::DoNotOptimize(editor.get());
                                       ++count;
                                   });
    }
    state.counters["editors"] = count;
}

} // namespace

BENCHMARK(RawRead)->Unit(benchmark::kMicrosecond);
BENCHMARK(EditorValues)->Unit(benchmark::kMicrosecond);
BENCHMARK(CommonProperties)->Arg(1)->Arg(1000)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    kv::FinalizePropertyEditors();
    return 0;
}
