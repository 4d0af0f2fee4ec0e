// The drawings of the single pictures; each fills a canvas of the picture's size.
#pragma once

#include "gui_paint.h"

// Menus
void DrawButton(Canvas *canvas);
void DrawButtonDown(Canvas *canvas);
void DrawToggleGreen(Canvas *canvas);
void DrawToggleRed(Canvas *canvas);
void DrawArrowLeftDark(Canvas *canvas);
void DrawArrowLeftGreen(Canvas *canvas);
void DrawArrowRightDark(Canvas *canvas);
void DrawArrowRightGreen(Canvas *canvas);
void DrawArrowUpDark(Canvas *canvas);
void DrawArrowUpGreen(Canvas *canvas);
void DrawArrowDownDark(Canvas *canvas);
void DrawArrowDownGreen(Canvas *canvas);
void DrawSliderTrack(Canvas *canvas);
void DrawSliderKnob(Canvas *canvas);
void DrawScrollTrack(Canvas *canvas);
void DrawScrollKnob(Canvas *canvas);
void DrawTextRow(Canvas *canvas);
void DrawTab(Canvas *canvas);
void DrawTabShade(Canvas *canvas);
void DrawOkDull(Canvas *canvas);
void DrawOkBright(Canvas *canvas);
void DrawCancelDull(Canvas *canvas);
void DrawCancelBright(Canvas *canvas);
void DrawPlusDull(Canvas *canvas);
void DrawPlusBright(Canvas *canvas);
void DrawMinusDull(Canvas *canvas);
void DrawMinusBright(Canvas *canvas);

// Large pieces
void DrawLogo(Canvas *canvas);
void DrawSelectorFrame(Canvas *canvas);
void DrawSelectorDivider(Canvas *canvas);
void DrawInfoWindow(Canvas *canvas);
void DrawScreenGlass(Canvas *canvas);
void DrawClear(Canvas *canvas);

// The view while flying
void DrawCrosshairOrange(Canvas *canvas);
void DrawCrosshairRed(Canvas *canvas);
void DrawCrosshairGreen(Canvas *canvas);
void DrawCrosshairBlue(Canvas *canvas);
void DrawCrosshairYellow(Canvas *canvas);
void DrawCrosshairRainbow(Canvas *canvas);
void DrawConsole(Canvas *canvas);
void DrawComponentCard(Canvas *canvas);
void DrawMaterialCard(Canvas *canvas);
void DrawRotationAuto(Canvas *canvas);
void DrawRotationRight(Canvas *canvas);
void DrawRotationLeft(Canvas *canvas);
void DrawRotationUp(Canvas *canvas);
void DrawRotationDown(Canvas *canvas);
void DrawRotationFront(Canvas *canvas);
void DrawRotationBack(Canvas *canvas);
void DrawLampOff(Canvas *canvas);
void DrawLampRed(Canvas *canvas);
void DrawLampGreen(Canvas *canvas);
void DrawLampBlue(Canvas *canvas);
void DrawLampYellow(Canvas *canvas);

// Dials
void DrawGauge(Canvas *canvas);
void DrawNeedleBlack(Canvas *canvas);
void DrawNeedleYellow(Canvas *canvas);
void DrawNeedleBlue(Canvas *canvas);
void DrawTemperature(Canvas *canvas);
void DrawTemperatureRed(Canvas *canvas);
void DrawTemperatureOver(Canvas *canvas);
