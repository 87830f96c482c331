// Feeds arbitrary bytes to the binary component reader. The whole input is the stream, so
// that streams written by the tests are seeds as they are; a leading 0xFF reads a resource
// header first. The input's length picks the rest: into a new root or an existing one,
// strictly or with every error handled (which walks the paths that skip bad properties and
// components).

#include "platform/kvClasses.h"
#include "platform/kvException.h"
#include "platform/kvFiler.h"
#include "shell/kvIDEInspD5.h"

#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>

#include <memory>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QApplication app(*argc, *argv);
    kv::kvIDEInspD5::Initialize();
    kv::RegisterClasses<QWidget, QPushButton, QLabel, QLineEdit, QCheckBox, QSlider>();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size)
{
    const size_t mode = Size & 3;
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(Data), qsizetype(Size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    try {
        std::unique_ptr<QObject> root;
        if (mode & 1)
            root = std::make_unique<QWidget>();
        if (Size > 0 && Data[0] == 0xFF)
            kv::ReadResourceHeader(buffer);
        kv::TReader reader(&buffer);
        if (mode & 2)
            reader.SetErrorHook([](const QString &, bool &Handled) { Handled = true; });
        QObject *read = reader.ReadRootComponent(root.get());
        if (!root)
            root.reset(read);
    } catch (const kv::Exception &) {
        // Refusing bad input is the expected outcome.
    }
    return 0;
}
