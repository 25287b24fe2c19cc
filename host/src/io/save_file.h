// Replacing files.
#ifndef OCIFIP_HOST_IO_SAVE_FILE_H_
#define OCIFIP_HOST_IO_SAVE_FILE_H_

#include <functional>
#include <string>
#include <string_view>

namespace ocifip {

// Reads a whole file. Throws InputError with the file's name and the system's reason.
// Its capacity is larger by kRoomBehindText, as a rule, for parsers that look ahead.
constexpr std::size_t kRoomBehindText = 64;
std::string read_file(const std::string& name);

// Gives a file other content, all or nothing: whenever it is read, and whatever interrupts the
// writing, it has either its former content or the new. It must be a regular file, and still have
// the former content that the caller has read. It keeps its permissions and, where the system
// allows it, its owner. A symbolic link stays, and what it leads to is replaced. Other links to the
// file keep the former content. Throws InputError with the file's name and the reason; the file is
// as it was then.
//
// `ready`, when given, is called as soon as the new content is on the disk, and nothing but the
// exchange of the files is left. When it throws, the file stays as it was.
//
// Returns a sentence when the new content is there, and is not certain to survive a loss of power;
// "" when it is.
std::string save_file(const std::string& name, std::string_view former, std::string_view text,
                      const std::function<void()>& ready = {});

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_SAVE_FILE_H_
