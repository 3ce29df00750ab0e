// The editor's picture of data points, window class "VeldranPointGraph": axes, curve and handles, edited with mouse and
// keyboard, with undo. Its parent hears of every change of points or choice as WM_COMMAND with EN_CHANGE.
#pragma once

#include "settings/data_points.h"

#include <vector>

#include <windows.h>

namespace veldran {

// The class exists as long as this object; a dialog with a graph is opened and closed within.
class PointGraphClass {
public:
    PointGraphClass();
    PointGraphClass(const PointGraphClass&) = delete;
    PointGraphClass& operator=(const PointGraphClass&) = delete;
    ~PointGraphClass();
};

// Shows points, in any order and range, with nothing to undo.
void openPointGraph(HWND graph, PointsKind kind, std::vector<DataPoint> points);

const std::vector<DataPoint>& graphPoints(HWND graph);
std::size_t chosenGraphPoint(HWND graph);
bool isGraphEnd(HWND graph, std::size_t index);

// Moves the chosen point; changes between two calls of beginGraphStep are undone together.
void moveChosenPoint(HWND graph, DataPoint target);
void beginGraphStep(HWND graph);

// Adds a point half-way to the chosen one's wider neighbouring gap; false when there is no room.
bool addGraphPoint(HWND graph);
bool deleteChosenPoint(HWND graph);
bool canUndoGraph(HWND graph);
void undoGraph(HWND graph);

} // namespace veldran
