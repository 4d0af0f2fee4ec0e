// What each row of the table of element types is made from.
#include "gui/elements.h"

GuiType GuiTypes[GuiTypeRows];

// Rows that code names by their role are in GuiTypeRow. Every row with a hover class is followed by its look under the pointer.
const GuiTypeSource GuiTypeSources[GuiTypesInUse] = {
    {1, "gui/button.png", 300, 142, 0, 30, 0, 0, 0, 1},
    {2, "gui/buttondown.png", 300, 142, 0, 30, 255, 255, 255, 1},
    {3, "gui/togglegreen.png", 200, 83, 120, 30, 255, 255, 255, 1},
    {4, "gui/togglegreen.png", 200, 83, 120, 30, 255, 255, 255, 1},
    {5, "gui/togglered.png", 200, 83, 120, 30, 255, 255, 255, 1},
    {6, "gui/togglered.png", 200, 83, 120, 30, 255, 255, 255, 1},
    {7, "gui/sliderarrowleftdark.png", 86, 78, 60, 30, 255, 255, 255, 1},
    {8, "gui/sliderarrowleftgreen.png", 86, 78, 60, 30, 255, 255, 255, 1},
    {9, "gui/sliderarrowrightdark.png", 86, 78, -60, 30, 255, 255, 255, 1},
    {10, "gui/sliderarrowrightgreen.png", 86, 78, -60, 30, 255, 255, 255, 1},
    {11, "gui/sliderbackground.png", 475, 83, 0, 30, 0, 0, 0, 1},
    {12, "gui/sliderbackground.png", 475, 83, 0, 30, 0, 0, 0, 1},
    {13, "gui/slider.png", 68, 81, 0, 30, 0, 0, 0, 1},
    {14, "gui/slider.png", 68, 81, 0, 30, 0, 0, 0, 1},
    {15, "gui/sliderarrowupdark.png", 40, 41, 0, 30, 0, 0, 0, 1},
    {16, "gui/sliderarrowupgreen.png", 40, 41, 0, 30, 0, 0, 0, 1},
    {17, "gui/sliderarrowdowndark.png", 40, 41, 0, 30, 0, 0, 0, 1},
    {18, "gui/sliderarrowdowngreen.png", 40, 41, 0, 30, 0, 0, 0, 1},
    {19, "gui/slidervert.png", 42, 69, 0, 30, 0, 0, 0, 1},
    {20, "gui/slidervert.png", 42, 69, 0, 30, 0, 0, 0, 1},
    {21, "gui/sliderbackgroundvert2.png", 36, 552, 0, 30, 0, 0, 0, 0},
    {22, "gui/blankbutton2.png", 200, 40, 0, 36, 150, 150, 255, 0},
    {23, "gui/blankbutton2.png", 200, 40, 0, 30, 150, 150, 150, 1},
    {24, "gui/blankbutton2.png", 200, 40, 0, 30, 255, 255, 255, 1},
    {25, "gui/blankbutton2.png", 200, 40, 0, 30, 0, 200, 200, 1},
    {26, "gui/blankbutton2.png", 200, 40, 0, 30, 0, 255, 255, 1},
    {27, "gui/blankbutton2.png", 200, 40, 0, 30, 255, 255, 255, 0},
    {28, "gui/titlelogo.png", 920, 186, 0, 30, 255, 255, 255, 0},
    {29, "hud/crosshairorange.png", 50, 50, 0, 30, 255, 255, 255, 0},
    {30, "hud/crosshairred.png", 50, 50, 0, 30, 255, 255, 255, 0},
    {31, "hud/crosshairgreen.png", 50, 50, 0, 30, 255, 255, 255, 0},
    {32, "hud/crosshairblue.png", 50, 50, 0, 30, 255, 255, 255, 0},
    {33, "hud/crosshairyellow.png", 50, 50, 0, 30, 255, 255, 255, 0},
    {34, "hud/crosshairrainbow.png", 50, 50, 0, 30, 255, 255, 255, 0},
    {35, "hud/gauge.png", 358, 376, 0, 30, 255, 255, 255, 0},
    {36, "hud/gaugedialblack.png", 22, 162, 0, 30, 255, 255, 255, 0},
    {37, "hud/gaugedialyellow.png", 22, 172, 0, 30, 255, 255, 255, 0},
    {38, "hud/gaugedialblue.png", 27, 170, 0, 30, 255, 255, 255, 0},
    {39, "hud/blockselect.png", 438, 520, 0, 30, 255, 255, 255, 0},
    {40, "hud/componentselect.png", 281, 53, 30, 24, 0, 0, 0, 0},
    {41, "hud/materialselect.png", 283, 57, 30, 24, 0, 0, 0, 0},
    {42, "hud/rotationselectauto.png", 113, 116, 0, 30, 255, 255, 255, 0},
    {43, "hud/rotationselectright.png", 113, 116, 0, 30, 255, 255, 255, 0},
    {44, "hud/rotationselectleft.png", 113, 116, 0, 30, 255, 255, 255, 0},
    {45, "hud/rotationselectup.png", 113, 116, 0, 30, 255, 255, 255, 0},
    {46, "hud/rotationselectdown.png", 113, 116, 0, 30, 255, 255, 255, 0},
    {47, "hud/rotationselectfront.png", 113, 116, 0, 30, 255, 255, 255, 0},
    {48, "hud/rotationselectback.png", 113, 116, 0, 30, 255, 255, 255, 0},
    {49, "hud/temperatureindicator.png", 20, 22, 0, 30, 255, 255, 255, 0},
    {50, "hud/temperatureindicatorred.png", 41, 17, 0, 30, 255, 255, 255, 0},
    {51, "hud/temperatureover.png", 22, 25, 0, 30, 255, 255, 255, 0},
    {52, "hud/offlight.png", 49, 46, 0, 30, 255, 255, 255, 0},
    {53, "hud/redlight.png", 49, 46, 0, 30, 255, 255, 255, 0},
    {54, "hud/greenlight.png", 49, 46, 0, 30, 255, 255, 255, 0},
    {55, "hud/bluelight.png", 49, 46, 0, 30, 255, 255, 255, 0},
    {56, "hud/yellowlight.png", 49, 46, 0, 30, 255, 255, 255, 0},
    {57, "gui/tabbackground.png", 1893, 957, 0, 30, 255, 255, 255, 0},
    {58, "gui/tabdivider.png", 145, 882, 0, 30, 255, 255, 255, 0},
    {59, "gui/tabtab.png", 270, 120, -1010, 32, 0, 0, 0, 1},
    {60, "gui/tabtab.png", 270, 120, -1010, 32, 0, 0, 0, 1},
    {61, "gui/tabokdull.png", 102, 106, 0, 30, 255, 255, 255, 1},
    {62, "gui/tabokbright.png", 102, 106, 0, 30, 255, 255, 255, 1},
    {63, "gui/tabcanceldull.png", 102, 106, 0, 30, 255, 255, 255, 1},
    {64, "gui/tabcancelbright.png", 102, 106, 0, 30, 255, 255, 255, 1},
    {65, "NULL;", 1800, 874, -4242, 255, 85, 85, 85, 0},
    {66, "NULL;", 700, 874, -4242, 255, 62, 62, 62, 0},
    {67, "NULL;", 50, 50, -4242, 255, 85, 85, 85, 0},
    {68, "misc/infowindow.png", 620, 384, 310, 30, 0, 230, 0, 0},
    {69, "misc/crt.png", 1920, 1080, 0, 30, 0, 230, 0, 0},
    {70, "misc/clear.png", 1, 1, 0, 39, 0, 230, 0, 1},
    {71, "NULL;", 1, 1, -4243, 100, 74, 38, 28, 0},
    {72, "gui/expandplusdull.png", 25, 25, -20, 30, 150, 150, 150, 2},
    {73, "gui/expandplusbright.png", 25, 25, -20, 30, 255, 255, 255, 2},
    {74, "gui/expandminusdull.png", 25, 25, -20, 30, 150, 150, 150, 2},
    {75, "gui/expandminusbright.png", 25, 25, -20, 30, 255, 255, 255, 2},
    {76, "gui/tabshade.png", 270, 120, 0, 30, 255, 255, 255, 0},
    {77, "NULL;", 900, 1, -4243, 150, 12, 9, 8, 0},
    {78, "NULL;", 1, 1, -4243, 191, 25, 15, 12, 0},  // 77 over 71
};

void SetGuiType(const GuiTypeSource &source) {
  GuiType &type = GuiTypes[source.row];
  type.width = source.width;
  type.height = source.height;
  type.textColour[0] = source.red;
  type.textColour[1] = source.green;
  type.textColour[2] = source.blue;
  type.hoverClass = source.hoverClass;
  type.textSize = source.textSize;
  type.textOffset = source.textOffset;
}
