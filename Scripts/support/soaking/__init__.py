# SPDX-License-Identifier: MIT
"""What Scripts/soak does inside a private desktop, one kind of it in each module."""
