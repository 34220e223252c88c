#pragma once

/// Memory for nodes that are made by the thousand.
namespace NodeMemory {

/// How many nodes the room is for, about.
constexpr int nodesPerRoom = 128;

/// Has the heap of the calling thread grow once, before that many nodes are made, and in large pages where the system
/// has them. Otherwise it would grow bit by bit: the heap of a thread other than the main one with one call of the
/// system for each page, and every page with an interruption when it is first written to. Together that was a fifth of
/// the time of a scan. Reserves nothing: when there is free memory already, nothing happens. Any thread.
void makeRoom();

} // namespace NodeMemory
