#pragma once

#include "Options.h"

namespace VarnelAPI::Forms::cli {

/// What the program does. Each may say in the options what is being tried, and throws what went wrong.
/// @{
void list(Options& options);
void get(Options& options);
void count(Options& options);
void create(Options& options);
void update(Options& options);
void remove(Options& options);
void upload(Options& options);
void download(Options& options);
void exportAll(Options& options);
void request(Options& options);
void addProfile(Options& options);
void listProfiles(Options& options);
void removeProfile(Options& options);
void useProfile(Options& options);
/// A local repository with a small project, until it is interrupted.
void demo(Options& options);
/// @}

/// The live values of a completion, one after the other: the classes of a project; the columns of a family, after
/// those that all have. None if they can't be had at once.
/// @{
std::vector<std::string> liveClasses(Options options);
std::vector<std::string> liveColumns(Options options, const std::vector<std::string>& identity);
/// @}

} // namespace VarnelAPI::Forms::cli
