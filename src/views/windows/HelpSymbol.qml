// SPDX-License-Identifier: MIT
import Halvane

// The symbol beside a section of the help.
SymbolTile {
    side: 30
    symbolSize: 18
}
