// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "surfaces/Surfaces.h"

namespace brevok {

PanelSurface::PanelSurface(QObject *parent)
    : QObject(parent)
{
}

PanelSurface::~PanelSurface() = default;

} // namespace brevok
