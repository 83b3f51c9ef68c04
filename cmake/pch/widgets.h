#pragma once

#include "core.h"

#include <QApplication>
#include <QBoxLayout>
#include <QEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>
#include <QTreeWidget>
#include <QUndoCommand>
#include <QUndoStack>
#include <QWidget>
