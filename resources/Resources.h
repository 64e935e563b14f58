#pragma once

// The images that are part of the program, under ":/images".
namespace resources {

// Call once before the first image is used: a library's resources are there only after they were asked for.
void initialize();

}  // namespace resources
