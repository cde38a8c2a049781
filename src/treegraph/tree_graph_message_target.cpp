#include "treegraph/tree_graph_message_target.h"

void TreeGraphMessageTarget::OnSelectItem(TreeGraphItem*) {}

void TreeGraphMessageTarget::OnEndLabelEdit(TreeGraphItem*, const char*) {}

void TreeGraphMessageTarget::OnBeginLabelEdit(TreeGraphItem*, const char*) {}

void TreeGraphMessageTarget::OnExpandItem(TreeGraphItem*, bool) {}

void TreeGraphMessageTarget::OnStateIconClick(TreeGraphItem*) {}
