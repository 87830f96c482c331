// Component streams against QDataStream, for 10,000 components with six properties each
// (integer, string, Boolean, float, enumeration, reference) under one data module.
// 1. Writing: our writer against QDataStream writing the same names and values. Goal: 1.5x.
// 2. Reading and creating the components: ours against QDataStream reading the same and
//    creating them through the class registry. Goal: 1.5x.
// 3. Size: the "bytes" counter; ours at most 60% of QDataStream's.
// 4. The same stream converted to text and back: at most 3x writing plus reading it.

#include "platform/kvClasses.h"
#include "platform/kvDataModule.h"
#include "platform/kvFiler.h"
#include "platform/kvObjectText.h"
#include "platform/kvStreamDefaults.h"

#include <QApplication>
#include <QBuffer>
#include <QDataStream>
#include <QHash>
#include <QMetaProperty>

#include <benchmark/benchmark.h>

#include <memory>

class TBenchItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int count MEMBER m_count)
    Q_PROPERTY(QString caption MEMBER m_caption)
    Q_PROPERTY(bool active MEMBER m_active)
    Q_PROPERTY(double ratio MEMBER m_ratio)
    Q_PROPERTY(TKind kind MEMBER m_kind)
    Q_PROPERTY(QObject *link MEMBER m_link)

public:
    enum TKind { bkNone, bkSmall, bkLarge };
    Q_ENUM(TKind)
    Q_INVOKABLE explicit TBenchItem(QObject *parent = nullptr) : QObject(parent) {}

    int m_count = 0;
    QString m_caption;
    bool m_active = false;
    double m_ratio = 0;
    TKind m_kind = bkNone;
    QObject *m_link = nullptr;
};

namespace {

constexpr int ItemCount = 10000;

std::unique_ptr<kv::TDataModule> MakeModule()
{
    auto module = std::make_unique<kv::TDataModule>();
    module->setObjectName(QStringLiteral("Module"));
    TBenchItem *previous = nullptr;
    for (int i = 0; i < ItemCount; ++i) {
        auto *item = new TBenchItem(module.get());
        item->setObjectName(QStringLiteral("Item%1").arg(i));
        item->m_count = i * 7;
        item->m_caption = QStringLiteral("Caption of item %1").arg(i);
        item->m_active = i % 2;
        item->m_ratio = i / 3.0;
        item->m_kind = TBenchItem::TKind(1 + i % 2);
        item->m_link = previous;
        previous = item;
    }
    return module;
}

QByteArray OurStream(QObject *Module)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    kv::WriteComponent(buffer, Module);
    return buffer.data();
}

// The same names and values through QDataStream: class and object name, then each
// property's name and value (a reference as the name it points to).
QByteArray DataStream(QObject *Module)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << kv::StreamClassName(Module->metaObject()).toLatin1() << Module->objectName() << qint32(Module->children().size());
    for (QObject *child : Module->children()) {
        const QMetaObject *meta = child->metaObject();
        out << kv::StreamClassName(meta).toLatin1() << child->objectName();
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            const QMetaProperty property = meta->property(i);
            out << QByteArray(property.name());
            if (property.metaType().flags() & QMetaType::PointerToQObject) {
                QObject *target = property.read(child).value<QObject *>();
                out << QVariant(target ? target->objectName() : QString());
            } else {
                out << property.read(child);
            }
        }
    }
    return bytes;
}

void ReadDataStream(const QByteArray &Bytes, std::unique_ptr<QObject> &Result)
{
    QDataStream in(Bytes);
    QByteArray className;
    QString name;
    qint32 count;
    in >> className >> name >> count;
    Result.reset(kv::CreateObject(QString::fromLatin1(className), nullptr));
    Result->setObjectName(name);
    QHash<QString, QObject *> names;
    QList<std::pair<QObject *, QString>> links;
    for (qint32 n = 0; n < count; ++n) {
        in >> className >> name;
        QObject *child = kv::CreateObject(QString::fromLatin1(className), Result.get());
        child->setObjectName(name);
        names.insert(name, child);
        const QMetaObject *meta = child->metaObject();
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            QByteArray property;
            QVariant value;
            in >> property >> value;
            if (property == "link")
                links.append({child, value.toString()});
            else
                child->setProperty(property.constData(), value);
        }
    }
    for (const auto &[child, target] : links)
        child->setProperty("link", QVariant::fromValue(names.value(target)));
}

void WriteOurs(benchmark::State &state)
{
    auto module = MakeModule();
    qsizetype size = 0;
    for (auto _ : state) {
        const QByteArray bytes = OurStream(module.get());
        size = bytes.size();
        benchmark::DoNotOptimize(bytes.constData());
    }
    state.counters["bytes"] = double(size);
}

void WriteDataStream(benchmark::State &state)
{
    auto module = MakeModule();
    qsizetype size = 0;
    for (auto _ : state) {
        const QByteArray bytes = DataStream(module.get());
        size = bytes.size();
        benchmark::DoNotOptimize(bytes.constData());
    }
    state.counters["bytes"] = double(size);
}

void ReadOurs(benchmark::State &state)
{
    const QByteArray bytes = OurStream(MakeModule().get());
    for (auto _ : state) {
        QBuffer buffer;
        buffer.setData(bytes);
        buffer.open(QIODevice::ReadOnly);
        std::unique_ptr<QObject> module(kv::ReadComponent(buffer));
        benchmark::DoNotOptimize(module.get());
        state.PauseTiming();
        module.reset();
        state.ResumeTiming();
    }
    state.counters["bytes"] = double(bytes.size());
}

void ReadDataStreamBench(benchmark::State &state)
{
    const QByteArray bytes = DataStream(MakeModule().get());
    for (auto _ : state) {
        std::unique_ptr<QObject> module;
        ReadDataStream(bytes, module);
        benchmark::DoNotOptimize(module.get());
        state.PauseTiming();
        module.reset();
        state.ResumeTiming();
    }
    state.counters["bytes"] = double(bytes.size());
}

void ConvertToTextAndBack(benchmark::State &state)
{
    const QByteArray bytes = OurStream(MakeModule().get());
    qsizetype textSize = 0;
    for (auto _ : state) {
        QBuffer binary;
        binary.setData(bytes);
        binary.open(QIODevice::ReadOnly);
        QBuffer text;
        text.open(QIODevice::WriteOnly);
        kv::ObjectBinaryToText(binary, text);
        text.close();
        text.open(QIODevice::ReadOnly);
        QBuffer back;
        back.open(QIODevice::WriteOnly);
        kv::ObjectTextToBinary(text, back);
        textSize = text.size();
        benchmark::DoNotOptimize(back.data().constData());
    }
    state.counters["text bytes"] = double(textSize);
}

} // namespace

BENCHMARK(WriteOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteDataStream)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadDataStreamBench)->Name("ReadDataStream")->Unit(benchmark::kMillisecond);
BENCHMARK(ConvertToTextAndBack)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    kv::RegisterClasses<TBenchItem, kv::TDataModule>();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    kv::FinalizeStreamDefaults();
    return 0;
}

#include "bench_streams.moc"
