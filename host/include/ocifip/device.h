// Device files: their JSON schema, and the device that a host has when it is given none.
#ifndef OCIFIP_DEVICE_H_
#define OCIFIP_DEVICE_H_

#include <string_view>

namespace ocifip {

// The JSON schema of device files. What it cannot express, such as names that are there twice, the
// host checks when it reads a file.
std::string_view device_schema();

// The device file of the built-in example device.
std::string_view example_device_file();

}  // namespace ocifip

#endif  // OCIFIP_DEVICE_H_
