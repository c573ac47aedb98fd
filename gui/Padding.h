#pragma once

// Four sides in the order top, right, bottom, left.
struct Padding
{
    int top = 0, right = 0, bottom = 0, left = 0;

    Padding() = default;
    Padding(int all) : top(all), right(all), bottom(all), left(all) {}
    Padding(int t, int r, int b, int l) : top(t), right(r), bottom(b), left(l) {}

    bool operator==(const Padding& other) const
    {
        return top == other.top && right == other.right && bottom == other.bottom && left == other.left;
    }
    bool operator!=(const Padding& other) const { return !(*this == other); }
};
