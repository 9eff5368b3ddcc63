#pragma once

#include "Foundation/Descriptor.h"

#include <string>

/// A name for something unfinished of ours in a Trash folder, beside `files` and `info`; no two are alike.
[[nodiscard]] std::string unfinishedName();

/// A private folder in a Trash, beside `files` and `info`, where a copy is made. It goes with all that is left in it at
/// the end of its life; one that a killed program left behind goes when `clearLeftovers` finds it.
class UnfinishedPlace {
public:
    /// `trash` is an open folder and outlives this.
    explicit UnfinishedPlace(int trash) : m_trash(trash) {}
    ~UnfinishedPlace() { remove(); }
    UnfinishedPlace(const UnfinishedPlace&) = delete;
    UnfinishedPlace& operator=(const UnfinishedPlace&) = delete;

    /// Makes the folder. 0, or the error number.
    [[nodiscard]] int make();

    /// The open folder.
    [[nodiscard]] int folder() const { return m_folder.number(); }

private:
    void remove();

    int m_trash;
    std::string m_name;
    Descriptor m_folder;
};

/// Removes what killed programs left unfinished in the open Trash folder `trash`. What a running one works on is
/// locked and stays; so does everything whose name is not one of ours.
void clearLeftovers(int trash);
