#pragma once
// The user guide, VoltrixDoc.htm: where it is, and opening it in the
// desktop's browser (F1).
#include <QString>

namespace voltrix {

class MessageBox;

// The installed guide beside the program (share/doc), else the one of the
// source tree the program was built from; empty when there is none.
QString UserGuidePath();

// Opens the guide in the browser, or says where it should have been.
void OpenUserGuide(MessageBox& messages);

}  // namespace voltrix
