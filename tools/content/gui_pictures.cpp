// The pictures of the menus and of the view while flying.
#include "gui_pictures.h"

#include "gui_draw.h"
#include "picture.h"

#include <string>

const std::vector<GuiPicture> &GuiPictures() {
  static const std::vector<GuiPicture> pictures = {
      {"gui/button.png", 300, 142, DrawButton},
      {"gui/buttondown.png", 300, 142, DrawButtonDown},
      {"gui/togglegreen.png", 200, 83, DrawToggleGreen},
      {"gui/togglered.png", 200, 83, DrawToggleRed},
      {"gui/sliderarrowleftdark.png", 86, 78, DrawArrowLeftDark},
      {"gui/sliderarrowleftgreen.png", 86, 78, DrawArrowLeftGreen},
      {"gui/sliderarrowrightdark.png", 86, 78, DrawArrowRightDark},
      {"gui/sliderarrowrightgreen.png", 86, 78, DrawArrowRightGreen},
      {"gui/sliderbackground.png", 475, 83, DrawSliderTrack},
      {"gui/slider.png", 68, 81, DrawSliderKnob},
      {"gui/sliderarrowupdark.png", 40, 41, DrawArrowUpDark},
      {"gui/sliderarrowupgreen.png", 40, 41, DrawArrowUpGreen},
      {"gui/sliderarrowdowndark.png", 40, 41, DrawArrowDownDark},
      {"gui/sliderarrowdowngreen.png", 40, 41, DrawArrowDownGreen},
      {"gui/slidervert.png", 42, 69, DrawScrollKnob},
      {"gui/sliderbackgroundvert2.png", 36, 552, DrawScrollTrack},
      {"gui/blankbutton2.png", 200, 40, DrawTextRow},
      {"gui/titlelogo.png", 920, 186, DrawLogo},
      {"hud/crosshairorange.png", 50, 50, DrawCrosshairOrange},
      {"hud/crosshairred.png", 50, 50, DrawCrosshairRed},
      {"hud/crosshairgreen.png", 50, 50, DrawCrosshairGreen},
      {"hud/crosshairblue.png", 50, 50, DrawCrosshairBlue},
      {"hud/crosshairyellow.png", 50, 50, DrawCrosshairYellow},
      {"hud/crosshairrainbow.png", 50, 50, DrawCrosshairRainbow},
      {"hud/gauge.png", 358, 376, DrawGauge},
      {"hud/gaugedialblack.png", 22, 162, DrawNeedleBlack},
      {"hud/gaugedialyellow.png", 22, 172, DrawNeedleYellow},
      {"hud/gaugedialblue.png", 27, 170, DrawNeedleBlue},
      {"hud/blockselect.png", 438, 520, DrawConsole},
      {"hud/componentselect.png", 281, 53, DrawComponentCard},
      {"hud/materialselect.png", 283, 57, DrawMaterialCard},
      {"hud/rotationselectauto.png", 113, 116, DrawRotationAuto},
      {"hud/rotationselectright.png", 113, 116, DrawRotationRight},
      {"hud/rotationselectleft.png", 113, 116, DrawRotationLeft},
      {"hud/rotationselectup.png", 113, 116, DrawRotationUp},
      {"hud/rotationselectdown.png", 113, 116, DrawRotationDown},
      {"hud/rotationselectfront.png", 113, 116, DrawRotationFront},
      {"hud/rotationselectback.png", 113, 116, DrawRotationBack},
      {"hud/temperatureindicator.png", 20, 22, DrawTemperature},
      {"hud/temperatureindicatorred.png", 41, 17, DrawTemperatureRed},
      {"hud/temperatureover.png", 22, 25, DrawTemperatureOver},
      {"hud/offlight.png", 49, 46, DrawLampOff},
      {"hud/redlight.png", 49, 46, DrawLampRed},
      {"hud/greenlight.png", 49, 46, DrawLampGreen},
      {"hud/bluelight.png", 49, 46, DrawLampBlue},
      {"hud/yellowlight.png", 49, 46, DrawLampYellow},
      {"gui/tabbackground.png", 1893, 957, DrawSelectorFrame},
      {"gui/tabdivider.png", 145, 882, DrawSelectorDivider},
      {"gui/tabtab.png", 270, 120, DrawTab},
      {"gui/tabshade.png", 270, 120, DrawTabShade},
      {"gui/tabokdull.png", 102, 106, DrawOkDull},
      {"gui/tabokbright.png", 102, 106, DrawOkBright},
      {"gui/tabcanceldull.png", 102, 106, DrawCancelDull},
      {"gui/tabcancelbright.png", 102, 106, DrawCancelBright},
      {"misc/infowindow.png", 620, 384, DrawInfoWindow},
      {"misc/crt.png", 1920, 1080, DrawScreenGlass},
      {"misc/clear.png", 1, 1, DrawClear},
      {"gui/expandplusdull.png", 25, 25, DrawPlusDull},
      {"gui/expandplusbright.png", 25, 25, DrawPlusBright},
      {"gui/expandminusdull.png", 25, 25, DrawMinusDull},
      {"gui/expandminusbright.png", 25, 25, DrawMinusBright},
  };
  return pictures;
}

bool WriteGuiPictures() {
  for (const GuiPicture &picture : GuiPictures()) {
    Canvas canvas = NewCanvas(picture.width, picture.height);
    picture.draw(&canvas);
    if (!WriteRgbaPicture(Finished(canvas), std::string("config/graphics/") + picture.path)) return false;
  }
  return true;
}
