// The star box: six pictures of the sky round the player, whose edges meet.
#pragma once

// Writes "config/graphics/stars/stars1.png" to "stars6.png". False when one can't be written.
bool WriteStars();
