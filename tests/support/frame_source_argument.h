#pragma once

// CTest runs the end-to-end programs once with each frame source, named by
// --brovia-frame-source=<name>: the engine reads it from BROVIA_FRAME_SOURCE.
void takeFrameSourceArgument(int argc, char** argv);
