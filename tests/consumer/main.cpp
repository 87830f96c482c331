// Uses the installed package as another program would: a sorted list, a string source
// over a list of lines, and the property editor of a label's text. Exits 0 when all agree.

#include <foundation/ideLib_sortedlist.h>
#include <platform/kvPropertyRegistry.h>
#include <treesrc/ideTSLite_stringsource.h>

#include <QApplication>
#include <QLabel>

#include <cstdio>
#include <memory>

class TLines : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList Lines MEMBER Lines)
public:
    QStringList Lines{QStringLiteral("first"), QStringLiteral("second")};
};

static bool Check(bool ok, const char *what)
{
    if (!ok)
        std::fprintf(stderr, "consumer: %s\n", what);
    return ok;
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    bool ok = true;

    int a = 0, b = 0, c = 0;
    kv::TSortedList list;
    for (int *item : {&c, &a, &b})
        list.Add(item);
    ok &= Check(list.Count() == 3 && list.IndexOf(&b) >= 0, "sorted list");

    TLines lines;
    kv::TKVStringSource source;
    source.SetPropName(QStringLiteral("Lines"));
    source.SetTreeLink(&lines);
    QStringList captions;
    source.GetItems(0, [&](const kv::TNodeRec &rec) { captions.append(rec.Caption); });
    ok &= Check(captions == lines.Lines, "string source");

    QLabel label(QStringLiteral("before"));
    std::unique_ptr<kv::TPropertyEditor> text;
    kv::GetComponentProperties({&label}, kv::TTypeKinds::Any(), nullptr, [&](std::unique_ptr<kv::TPropertyEditor> editor) {
        if (editor->GetName() == QLatin1String("text"))
            text = std::move(editor);
    });
    ok &= Check(text && text->GetValue() == QLatin1String("before"), "text editor reads");
    if (text)
        text->SetValue(QStringLiteral("after"));
    ok &= Check(label.text() == QLatin1String("after"), "text editor writes");

    std::puts(ok ? "consumer: ok" : "consumer: failed");
    return ok ? 0 : 1;
}

#include "main.moc"
