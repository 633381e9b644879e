// SPDX-License-Identifier: MIT
// A row of the report: an operation of the library beside a yardstick that does the same work by hand,
// measured in the same run, and the largest ratio of the two that is allowed.
#ifndef FWLIB_BENCH_ROWS_H
#define FWLIB_BENCH_ROWS_H

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>
#include <limits>
#include <string>

using Measured = std::function<void(benchmark::State&)>;

constexpr double NoBar = std::numeric_limits<double>::infinity(); // for a row that only informs

void AddRow(const std::string& Name, double dBar, const Measured& Library, const Measured& Yardstick);

// A row whose yardstick is a given time instead of a measured one: what a rate allows.
void AddTimedRow(const std::string& Name, double dNanoseconds, const Measured& Library);

// Runs every row and prints the table. 1 when every ratio kept its bar.
int RunRows(std::FILE* pReport);

void AddDeliveryRows();
void AddPropertyRows();
void AddBuildingRows();
void AddCoderRows();
void AddCompressorRows();
void AddRecordRows();
void AddRecordingRows();

// Sends 100 million objects and prints the resident memory before and after. 1 when it did not grow.
int SendManyObjects(std::FILE* pReport);

#endif
