#pragma once

// Object trees for scale tests, and the count of the objects a program holds.

#include <QtGlobal>

#include <memory>

class QObject;

// How many children each object of the extra tree gets before the next one is filled.
inline constexpr int ExtraObjectsFanOut = 10;

// Creates count QObjects named "ExtraObject1".."ExtraObject<count>" in a tree below a new
// root named "ExtraObjects" (the root is not counted), filled breadth-first with
// ExtraObjectsFanOut children per object so that the tree stays shallow. Returns null for 0.
std::unique_ptr<QObject> CreateExtraObjects(QObject *parent, int count);

struct ObjectCount
{
    qsizetype objects = 0;   // every object counted once
    qsizetype topLevelWidgets = 0;
};

// The QObjects reachable from the application object and from the top-level widgets
// through their children.
ObjectCount CountReachableObjects();
