#pragma once

#include "support/FuseDisk.h"

#include <sys/stat.h>

#include <cstdint>
#include <ctime>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

/// What the server of a FuseDisk keeps in memory: files, folders, and how the disk is to behave. Used by one thread.
class ServedDisk {
public:
    using Operation = FuseDisk::Operation;
    using Oddity = FuseDisk::Order::Kind;

    struct Node {
        std::uint64_t number;
        Node* parent;
        std::string name;
        mode_t mode;
        timespec modified{};
        std::string data{};
        std::map<std::string, Node*> children{};
    };

    ServedDisk();

    /// The node of a number; 1 is the root. Nodes live as long as the disk, so that no number is given twice.
    [[nodiscard]] Node& node(std::uint64_t number) { return m_nodes[number - 1]; }

    Node& add(Node& folder, const std::string& name, mode_t mode);

    /// Null where there is none.
    [[nodiscard]] static Node* child(const Node& folder, const std::string& name);

    /// Where a node, or an entry of a folder, lies; relative to the root, whose path is empty.
    [[nodiscard]] static std::string path(const Node& of);
    [[nodiscard]] static std::string path(const Node& folder, const std::string& name);

    /// What the system is told of a node.
    [[nodiscard]] struct stat status(const Node& of);

    /// Zero, or why it is not told.
    [[nodiscard]] int failure(const Node& of) const;

    /// Whether the disk has a habit that has no value.
    [[nodiscard]] bool has(Oddity oddity) const { return m_oddities.contains(oddity); }

    /// Does `work`, which answers a request, now or when it is held back no longer.
    void answer(Operation operation, const std::string& path, std::function<void()> work);

    void obey(const FuseDisk::Order& order, const std::string& path);

private:
    struct Rule {
        Operation operation;
        std::string path;
    };

    [[nodiscard]] bool isHeld(Operation operation, const std::string& path) const;

    std::deque<Node> m_nodes;
    std::vector<Rule> m_hanging;
    std::vector<std::function<void()>> m_held;
    std::map<std::string, int> m_failures;
    std::set<Oddity> m_oddities;
    std::uint64_t m_statuses = 0;  ///< How many were told.
};
