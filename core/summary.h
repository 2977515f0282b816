#pragma once
// The end-of-plot summary that zorfin prints.

#include <string>

#include "core/clock.h"

namespace zorvel {

struct GlobalBlock;

// The summary block, each line begun by a newline and a blank, 66 characters wide:
//
//  <<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<
//  <<                END OF ZORVEL / VERSION 10.6                  <<
//  <<  Date    : 21.11.2026  Time    : 10:15:00  Pageformat: DA4L  <<
//  <<  Vectors : 1234        Warnings: 0         Fileformat: PS    <<
//  <<  Metafile: zorvel.ps                                         <<
//  <<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<
std::string summary_text(const GlobalBlock& g, const DateTime& now);

// Prints the summary as the protocol setting says: to the message device (ON) or only
// to the message file (FILE); nothing when it is OFF or messages are off.
void print_summary(GlobalBlock& g);

}  // namespace zorvel
