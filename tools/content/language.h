// The English language file.
#pragma once

// Writes "config/language/english". False when it can't.
bool WriteLanguage();
