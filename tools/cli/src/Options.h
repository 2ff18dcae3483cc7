#pragma once

#include "Settings.h"

#include <string>
#include <vector>

namespace VarnelAPI::Forms::cli {

/// What the command line says.
struct Options {
    // For every verb.
    Access access;
    std::string profile;
    std::vector<std::string> headers;
    bool isDry = false;
    bool isVerbose = false;
    double timeout = 0;
    int retries = 2;
    std::string output;
    std::vector<std::string> columns;
    std::vector<std::string> addedColumns;
    std::string jq;

    // What it is about.
    std::string family;
    std::string id;
    std::string className;
    std::string owner;

    // Lists.
    std::string filter;
    std::string select;
    std::string order;
    std::string filterSettings;
    int top = 0;
    int skip = 0;
    bool isAll = false;

    // Changes.
    std::vector<std::string> set;
    std::string file;
    bool isYes = false;

    // Files.
    std::vector<std::string> target;
    std::string to;
    bool isForced = false;

    // Any request.
    std::string method;
    std::string path;
    std::vector<std::string> query;
    std::string contentType;
    bool isIncluding = false;

    // The program itself.
    std::string name;
    int port = 0;
    std::vector<std::string> words;

    /// What is being tried, as the beginning of a sentence.
    std::string attempt = "The command";
};

} // namespace VarnelAPI::Forms::cli
