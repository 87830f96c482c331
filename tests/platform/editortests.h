#pragma once

// What the property editor tests share: editors of a selection picked by name, their value
// lists, the text of what an action raises, and a designer that records what it is told.

#include "design/ideGen_designer.h"
#include "platform/kvException.h"
#include "platform/kvPropertyRegistry.h"

#include <QStringList>

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
    for (const TEditorPtr &editor : Editors) {
        if (editor->GetName() == Name)
            return editor.get();
    }
    return nullptr;
}

// The same, taken out of Editors.
inline TEditorPtr Take(TEditors &&Editors, const QString &Name)
{
    for (TEditorPtr &editor : Editors) {
        if (editor->GetName() == Name)
            return std::move(editor);
    }
    return nullptr;
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

// The message of the kv::Exception that Action raises; empty when it raises none.
inline QString ErrorOf(const std::function<void()> &Action)
{
    try {
        Action();
    } catch (const Exception &error) {
        return error.Message();
    }
    return {};
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

} // namespace kv::test
