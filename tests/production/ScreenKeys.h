#pragma once

#include "support/ScreenKeys.h"

// A clerk's keys on the production screens, beyond those of every screen.
namespace gm::test {

// Cells of one line from column 0 on; a null text leaves its cell alone.
inline void typeLine(LineGrid* g, int row, const QStringList& cells) {
    for (int column = 0; column < cells.size(); ++column)
        if (!cells[column].isNull())
            typeCell(g, row, column, cells[column]);
}

} // namespace gm::test
