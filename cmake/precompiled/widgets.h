// SPDX-License-Identifier: GPL-3.0-or-later
// The same for the folders that have windows, see core.h.
#pragma once

#include "core.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QWidget>
