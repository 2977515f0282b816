#pragma once

namespace zorvel {

// Library version printed in the end-of-plot summary and written into file headers.
inline constexpr double kVersion = 10.6;
// The PostScript image writer keeps a version number of its own.
inline constexpr double kImageWriterVersion = 10.3;

}  // namespace zorvel
