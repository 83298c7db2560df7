// The families of work, in the order of the run.
#pragma once

namespace bench {

// Rows that compare the library with a reference.
void add_body_rows();
void add_header_rows();
void add_one_shot_rows();

// Tables of the library alone.
void print_overhead();  // what a call costs on an empty text, and its heap allocations
void print_memory();    // peak of a body call at 128 MiB
void print_growth();    // time per byte from 1 KiB to 256 MiB

}  // namespace bench
