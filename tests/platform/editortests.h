#pragma once

// What the property editor tests share: editors of a selection picked by name, their value
// lists, a designer that records what it is told, and the tables of what editors show and take.

#include "design/ideGen_designer.h"
#include "platform/kvException.h"
#include "platform/kvPropertyRegistry.h"
#include "tests/testsupport.h"

#include <QStringList>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace kv::test {

using TEditorPtr = std::unique_ptr<TPropertyEditor>;
using TEditors = std::vector<TEditorPtr>;

inline TEditors EditorsOf(const QList<QObject *> &Objects, IFormDesigner *Designer = nullptr,
                          TTypeKinds Filter = TTypeKinds::Any())
{
    TEditors editors;
    GetComponentProperties(Objects, Filter, Designer, [&](TEditorPtr Editor) { editors.push_back(std::move(Editor)); });
    return editors;
}

inline TEditors SubEditors(const TPropertyEditor &Editor)
{
    TEditors editors;
    Editor.GetProperties([&](TEditorPtr Sub) { editors.push_back(std::move(Sub)); });
    return editors;
}

// The editor named Name among Editors; null when there is none.
inline TPropertyEditor *Find(const TEditors &Editors, const QString &Name)
{
    const auto found =
        std::find_if(Editors.begin(), Editors.end(), [&](const TEditorPtr &E) { return E->GetName() == Name; });
    return found == Editors.end() ? nullptr : found->get();
}

// The same, taken out of Editors.
inline TEditorPtr Take(TEditors &&Editors, const QString &Name)
{
    const auto found =
        std::find_if(Editors.begin(), Editors.end(), [&](const TEditorPtr &E) { return E->GetName() == Name; });
    return found == Editors.end() ? nullptr : std::move(*found);
}

// The editor of Path in Objects: a property's name, or "name.Part" for one of its parts.
inline TEditorPtr EditorFor(const QList<QObject *> &Objects, const QString &Path, IFormDesigner *Designer = nullptr)
{
    const QStringList names = Path.split(QLatin1Char('.'));
    TEditorPtr editor = Take(EditorsOf(Objects, Designer), names.front());
    for (qsizetype i = 1; i < names.size() && editor; ++i)
        editor = Take(SubEditors(*editor), names.at(i));
    return editor;
}

inline QStringList Names(const TEditors &Editors)
{
    QStringList names;
    for (const TEditorPtr &editor : Editors)
        names.append(editor->GetName());
    return names;
}

inline QStringList Strings(std::initializer_list<const char *> Texts)
{
    QStringList strings;
    for (const char *text : Texts)
        strings.append(QString::fromUtf8(text));
    return strings;
}

inline QStringList ValuesOf(const TPropertyEditor &Editor)
{
    QStringList values;
    Editor.GetValues([&](const QString &Value) { values.append(Value); });
    return values;
}

// A row of a text table (columns from TextColumns): Text written into the property Name shows as
// Shown (Text itself when none is given).
inline void Shows(const char *Name, const char *Text, const char *Shown = nullptr)
{
    QTest::addRow("%s: %s", Name, Text) << QString::fromLatin1(Name) << QString::fromUtf8(Text)
                                        << QString::fromUtf8(Shown ? Shown : Text) << QString();
}

// A row of a text table: Text written into the property Name raises Message.
inline void Refuses(const char *Name, const char *Text, const char *Message)
{
    QTest::addRow("%s refuses %s", Name, Text) << QString::fromLatin1(Name) << QString::fromUtf8(Text) << QString()
                                               << QString::fromUtf8(Message);
}

inline void TextColumns()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("message");
}

// A stand-alone designer that counts the changes it is told of and records the renames it is
// asked to allow.
class TRecordingDesigner : public TFDesigner
{
public:
    using TFDesigner::TFDesigner;
    void Modified() override
    {
        ++modified;
        TFDesigner::Modified();
    }
    void ValidateRename(QObject *Component, const QString &CurName, const QString &NewName) override
    {
        renames.append(CurName + QLatin1String("->") + NewName);
        TFDesigner::ValidateRename(Component, CurName, NewName);
    }
    int modified = 0;
    QStringList renames;
};

// The current row of a text table, written into Object: the text shows as the row's text and
// the designer hears of it once, or it raises the row's message and changes nothing.
inline void CheckTextRow(QObject &Object)
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QString, shown);
    QFETCH(QString, message);

    TRecordingDesigner designer;
    TEditorPtr editor = EditorFor({&Object}, name, &designer);
    QVERIFY(editor);
    const QString before = editor->GetValue();
    QCOMPARE(ErrorOf([&] { editor->SetValue(text); }), message);
    QCOMPARE(editor->GetValue(), message.isEmpty() ? shown : before);
    QCOMPARE(designer.modified, message.isEmpty() ? 1 : 0);
}

inline void ReadColumns()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("attributes");
    QTest::addColumn<QStringList>("firstValues");
}

// A row of a table of what editors show (columns from ReadColumns): the editor of Path shows
// Value, has Attributes, and its value list starts with FirstValues.
inline void Reads(const char *Path, const char *Value, int Attributes, const QStringList &FirstValues = {})
{
    QTest::newRow(Path) << QString::fromLatin1(Path) << QString::fromUtf8(Value) << Attributes << FirstValues;
}

// The current row of such a table, on Object; every entry of the value list of an editor that
// is not read-only is accepted and reads back as itself.
inline void CheckReadRow(QObject &Object)
{
    QFETCH(QString, path);
    QFETCH(QString, value);
    QFETCH(int, attributes);
    QFETCH(QStringList, firstValues);

    TEditorPtr editor = EditorFor({&Object}, path);
    QVERIFY(editor);
    QCOMPARE(editor->GetValue(), value);
    QCOMPARE(int(editor->GetAttributes()), attributes);
    const QStringList values = ValuesOf(*editor);
    QCOMPARE(values.mid(0, firstValues.size()), firstValues);
    QCOMPARE(QStringList(values).removeDuplicates(), 0);
    if (attributes & paReadOnly)
        return;
    for (const QString &entry : values) {
        editor->SetValue(entry);
        QCOMPARE(editor->GetValue(), entry);
    }
}

} // namespace kv::test
