// The platform layer: exclusive creation of versioned files, file identity through a
// stream and through the name, and the memory stream of memfil.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "core/platform.h"

namespace zorvel {
namespace {

TEST(Platform, ExclusiveCreationIdentityAndMemoryStreams) {
  // Catches "x" that overwrites a file (two plots would share one version), a stream and
  // its name that do not identify the same file (warning 185 on every plot), and memory
  // streams that lose what was written before the close.
  const std::filesystem::path dir = std::filesystem::temp_directory_path() / "zorvel_platform";
  std::filesystem::create_directories(dir);
  const std::string a = (dir / "a.txt").string();
  const std::string b = (dir / "b.txt").string();
  std::filesystem::remove(a);
  std::FILE* f = platform::open_file(a, "wx");
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(platform::open_file(a, "wx"), nullptr);  // exists: not created again
  std::fputs("first", f);
  std::fflush(f);
  const platform::FileStatus by_stream = platform::stream_status(f);
  const platform::FileStatus by_name = platform::file_status(a);
  EXPECT_TRUE(by_stream.regular && by_name.regular);
  EXPECT_EQ(by_stream.device, by_name.device);
  EXPECT_EQ(by_stream.inode, by_name.inode);
  std::fclose(f);
  std::FILE* other = platform::open_file(b, "w");
  ASSERT_NE(other, nullptr);
  std::fclose(other);
  EXPECT_NE(platform::file_status(b).inode, by_name.inode);
  EXPECT_FALSE(platform::file_status((dir / "none").string()).exists);
  EXPECT_FALSE(platform::file_status(dir.string()).regular);

  char* data = nullptr;
  std::size_t size = 0;
  std::FILE* m = platform::open_memory_stream(&data, &size);
  ASSERT_NE(m, nullptr);
  std::fputs("kept in memory", m);
  platform::settle_memory_stream(m, &data, &size);
  std::fclose(m);
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(std::string(data, size), "kept in memory");
  std::free(data);
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace zorvel
